// SPDX-License-Identifier: MIT
#include "app/ProgramIcon.h"

// Outside the namespace: a static library's resources are registered by hand.
static void registerPictures()
{
    Q_INIT_RESOURCE(qovelmor);
}

namespace qovelmor {

using namespace Qt::Literals::StringLiterals;

// Pixels in each size: drawing the vector picture takes a plugin that many systems do not have.
QIcon programIcon()
{
    registerPictures();
    QIcon icon;
    for (const int side : {16, 24, 32, 48, 64, 128})
        icon.addFile(u":/desktop/qovelmorrss-%1.png"_s.arg(side), QSize(side, side));
    return icon;
}

} // namespace qovelmor
