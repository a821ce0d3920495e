# The macOS adapters, and the application bundle on top of them.
enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)

option(TARVEX_UNIVERSAL "Build the application for both kinds of processor" ON)

# References are counted by ObjCHandle, as in the tests; Apple may deprecate an interface at any time.
set(objectiveCOptions -fno-objc-arc -Wno-error=deprecated-declarations)

file(GLOB_RECURSE macOSSources CONFIGURE_DEPENDS
    "${CMAKE_CURRENT_SOURCE_DIR}/Platform/MacOS/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/Platform/MacOS/*.mm"
    "${CMAKE_CURRENT_SOURCE_DIR}/Platform/MacOS/*.h")
list(FILTER macOSSources EXCLUDE REGEX "/Main\\.mm$")
add_library(TarvexMacOS STATIC ${macOSSources})
target_compile_options(TarvexMacOS PRIVATE ${objectiveCOptions})
target_link_libraries(TarvexMacOS PUBLIC TarvexApp TarvexPosix)
foreach(framework IN ITEMS AppKit ApplicationServices Carbon CoreFoundation CoreGraphics CoreServices
        Foundation IOKit QuartzCore ServiceManagement)
    target_link_libraries(TarvexMacOS PUBLIC "-framework ${framework}")
endforeach()

# Made of its drawing by Packaging/MacOS/make-icon.
set(icon "${CMAKE_CURRENT_SOURCE_DIR}/Packaging/MacOS/Tarvex.icns")
add_executable(Tarvex MACOSX_BUNDLE Platform/MacOS/Main.mm "${icon}" VERSION)
target_compile_options(Tarvex PRIVATE ${objectiveCOptions})
target_link_libraries(Tarvex PRIVATE TarvexMacOS)
set_source_files_properties("${icon}" VERSION PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
set_target_properties(Tarvex PROPERTIES
    MACOSX_BUNDLE_INFO_PLIST "${CMAKE_CURRENT_SOURCE_DIR}/Packaging/MacOS/Info.plist.in"
    RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
if(TARVEX_UNIVERSAL)
    # The tests' own libraries may be built for one kind alone; they link with either.
    set_target_properties(TarvexCore TarvexApp TarvexPosix TarvexMacOS Tarvex PROPERTIES
        OSX_ARCHITECTURES "arm64;x86_64")
endif()

# Signed by nobody, which is enough on the Mac that it was built on. The hardened runtime has no exceptions:
# accessibility and input monitoring are the user's to grant.
add_custom_target(TarvexSigned ALL
    COMMAND codesign --force --sign - --options runtime
        --entitlements "${CMAKE_CURRENT_SOURCE_DIR}/Packaging/MacOS/Tarvex.entitlements"
        "$<TARGET_BUNDLE_DIR:Tarvex>"
    COMMENT "Signing the application" VERBATIM)
add_dependencies(TarvexSigned Tarvex)

add_custom_target(package
    COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/Packaging/MacOS/make-disk-image" "$<TARGET_BUNDLE_DIR:Tarvex>"
        "${CMAKE_BINARY_DIR}/Tarvex-${PROJECT_VERSION}.dmg"
    COMMENT "Making the disk image" VERBATIM)
add_dependencies(package TarvexSigned)

if(TARVEX_BUILD_TESTS)
    # Holds the system's own headers to what the adapters rely on, as Tests/MacOS does with the C interfaces.
    add_library(TarvexAppleHeaderChecks OBJECT Tests/MacOS/TypeCheck/StaticAssertions.mm)
    target_compile_options(TarvexAppleHeaderChecks PRIVATE ${objectiveCOptions})
    target_link_libraries(TarvexAppleHeaderChecks PRIVATE TarvexOptions)
endif()
