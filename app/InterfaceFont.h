// SPDX-License-Identifier: MIT
#pragma once

namespace qovelmor {

/// Every Japanese character of the windows comes from one face: where the desktop's own font has
/// none of them (a system in another language), an installed Japanese face stands in for all of
/// them. Otherwise each would be taken from whatever font happens to hold it. After the
/// application has been made.
void chooseInterfaceFont();

} // namespace qovelmor
