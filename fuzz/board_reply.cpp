// SPDX-License-Identifier: MIT
// Any bytes as the board's answer.
#include "FuzzTarget.h"
#include "board/FarmReply.h"
#include "board/HexText.h"
#include "board/UnreadAnswers.h"
#include "platform/TextEncoding.h"

using namespace qovelmor;
using namespace qovelmor::fuzz;
using namespace Qt::Literals::StringLiterals;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = bytesOf(data, size);
    const QString reply = decodeShiftJis(bytes);

    const FarmPayload payload = farmPayload(reply, [] { return false; });
    promise(payload.text.has_value() && !payload.timeIsUp, "there is always a payload");
    promise(payload.faults.isEmpty(), "no range of ours lies outside");
    promise(!payload.text->contains(u'\r'), "the payload ends before the carriage return");
    farmInteger(payload.text);
    farmIntegerAfter(payload.text, u"mode="_s);
    promise(farmWords(payload.text).size() % 2 == 0, "words have two bytes");
    intValueWithHexString(*payload.text);

    const QStringList lines = romDataLines(reply);
    qsizetype pieces = 0;
    for (const QString &line : lines)
        pieces += line.size() + 1;
    promise(romDataBytes(lines).size() <= pieces, "no more bytes than were listed");
    promise(helpText(reply).size() <= reply.size(), "help is a part of the answer");

    // However the bytes are cut, the same marks are found.
    UnreadAnswers whole;
    UnreadAnswers single;
    for (int i = 0; i < 3; ++i) {
        whole.commandSent();
        single.commandSent();
    }
    whole.saw(bytes);
    for (const char byte : bytes)
        single.saw(QByteArray(1, byte));
    promise(whole.isMissing() == single.isMissing(), "single bytes count like all at once");
    return 0;
}
