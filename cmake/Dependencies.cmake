# Everything that is taken from the system; run and test install the Debian packages of the same
# names (see scripts/packages.txt).
find_package(Threads REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets DBus Multimedia Test)
find_package(CURL REQUIRED)
find_package(LibXml2 REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(PLIST REQUIRED IMPORTED_TARGET libplist-2.0)
pkg_check_modules(UDEV REQUIRED IMPORTED_TARGET libudev)
pkg_check_modules(GIO REQUIRED IMPORTED_TARGET gio-unix-2.0)
find_package(Fontconfig REQUIRED)
find_package(Freetype REQUIRED)
find_package(Python3 REQUIRED COMPONENTS Interpreter)
