# The Linux/X11 adapters and the program on top of them.
find_package(PkgConfig REQUIRED)
find_package(Qt6 6.2 REQUIRED COMPONENTS Core Gui Widgets DBus)
pkg_check_modules(TARVEX_XCB REQUIRED IMPORTED_TARGET
    xcb xcb-xinput xcb-randr xcb-record xcb-shape xcb-xfixes xcb-xkb xkbcommon xkbcommon-x11)

tarvex_library(TarvexLinux FOLDERS Platform/Linux
    LINK TarvexApp TarvexPosix Qt6::Core Qt6::Gui Qt6::Widgets Qt6::DBus PkgConfig::TARVEX_XCB)

add_executable(tarvex Platform/Linux/Main.cpp)
target_link_libraries(tarvex PRIVATE TarvexLinux)
target_compile_definitions(tarvex PRIVATE TARVEX_VERSION="${PROJECT_VERSION}")
set_target_properties(tarvex PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
include(cmake/LinuxInstall.cmake)
