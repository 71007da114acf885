// SPDX-License-Identifier: MIT
#include "platform/LinkOpener.h"

#include "platform/GioPointers.h"
#include "platform/LinkCheck.h"

#include <QFile>

namespace qovelmor {

namespace {

// An entry without a place for addresses on its command line would start without the address and
// count as a success.
bool launch(GAppInfo *application, const QByteArray &address)
{
    if (application == nullptr || !g_app_info_supports_uris(application))
        return false;
    GList addresses = {const_cast<char *>(address.constData()), nullptr, nullptr};
    return g_app_info_launch_uris(application, &addresses, nullptr, nullptr) == TRUE;
}

bool launchWith(const QString &browser, const QByteArray &address)
{
    const GioPointer<GDesktopAppInfo> entry(
        g_desktop_app_info_new_from_filename(QFile::encodeName(browser).constData()));
    return entry && launch(G_APP_INFO(entry.get()), address);
}

bool launchDefault(const QString &scheme, const QByteArray &address)
{
    const GioPointer<GAppInfo> application(
        g_app_info_get_default_for_uri_scheme(scheme.toLatin1().constData()));
    return launch(application.get(), address);
}

} // namespace

bool DesktopLinkOpener::open(const QString &address, const QString &browser)
{
    const auto link = checkedLink(address);
    if (!link)
        return false;
    const QByteArray encoded = link->toEncoded();
    if (!browser.isEmpty() && launchWith(browser, encoded))
        return true;
    return launchDefault(link->scheme(), encoded);
}

// The launcher says whether a program could be started; what runs `xdg-open` never learns that
// there was none.
bool openTextFile(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const GioText guess(g_content_type_guess(name.constData(), nullptr, 0, nullptr));
    const bool isUnknown = g_content_type_is_unknown(guess.get()) == TRUE;
    const GioPointer<GAppInfo> application(
        g_app_info_get_default_for_type(isUnknown ? "text/plain" : guess.get(), FALSE));
    if (!application || !(g_app_info_supports_files(application.get()) ||
                          g_app_info_supports_uris(application.get())))
        return false;
    const GioPointer<GFile> file(g_file_new_for_path(name.constData()));
    GList files = {file.get(), nullptr, nullptr};
    return g_app_info_launch(application.get(), &files, nullptr, nullptr) == TRUE;
}

} // namespace qovelmor
