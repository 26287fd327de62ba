# How every library, test and benchmark of the project is declared.

add_library(brevlin_options INTERFACE)
target_include_directories(brevlin_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(brevlin_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(BREVLIN_WARNINGS_AS_ERRORS)
    target_compile_options(brevlin_options INTERFACE -Werror)
endif()
target_compile_definitions(
    brevlin_options
    INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS
              QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(BREVLIN_SANITIZE)
    target_compile_options(brevlin_options INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer
                                                     -fno-sanitize-recover=undefined)
    target_link_options(brevlin_options INTERFACE -fsanitize=address,undefined)
endif()

if(BREVLIN_FUZZ)
    target_compile_options(brevlin_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# The moc of Qt 6.4 stumbles over some headers of the standard library. It needs nothing from them, so their include
# guards tell it that it has read them.
function(brevlin_moc target enabled)
    set_target_properties(
        ${target}
        PROPERTIES AUTOMOC "${enabled}"
                   AUTOMOC_COMPILER_PREDEFINES OFF
                   AUTOMOC_MOC_OPTIONS "-D_GLIBCXX_CHRONO;-D_GLIBCXX_COMPARE;-D_GLIBCXX_CONCEPTS")
endfunction()

# brevlin_library(Core SOURCES a.cpp … LINKS lib …) makes the static library Brevlin::Core. The headers of its folder
# form its header set, so that the target all_verify_interface_header_sets compiles each of them alone.
function(brevlin_library name)
    cmake_parse_arguments(ARG "QT" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    string(TOLOWER "brevlin_${name}" target)
    file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
    add_library(${target} STATIC ${ARG_SOURCES})
    add_library(Brevlin::${name} ALIAS ${target})
    target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/src FILES ${headers})
    target_link_libraries(
        ${target}
        PUBLIC brevlin_options ${ARG_LINKS}
        PRIVATE ${ARG_PRIVATE_LINKS})
    brevlin_moc(${target} "${ARG_QT}")
    set_target_properties(${target} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
endfunction()

# brevlin_program(verb SOURCES … LINKS …) makes brevlin-verb, one of the programs behind "brevlin". They lie beside it in
# the folder of the build; installed, where programs lie that nobody starts by hand.
function(brevlin_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    string(REPLACE - _ target brevlin_${name}_program)
    add_executable(${target} ${ARG_SOURCES})
    target_link_libraries(${target} PRIVATE brevlin_options ${ARG_LINKS})
    # What the libraries could need, and this program does not, is not loaded.
    target_link_options(${target} PRIVATE LINKER:--as-needed)
    set_target_properties(${target} PROPERTIES OUTPUT_NAME brevlin-${name} RUNTIME_OUTPUT_DIRECTORY
                                                                           ${PROJECT_BINARY_DIR}/src)
    install(TARGETS ${target} DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/brevlin)
endfunction()

# brevlin_test(core SOURCES … LINKS Brevlin::Core) makes one test program whose tests CTest runs one by one.
function(brevlin_test name)
    cmake_parse_arguments(ARG "QT" "" "SOURCES;LINKS" ${ARGN})
    set(target brevlin_${name}_tests)
    add_executable(${target} ${ARG_SOURCES})
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${target} PRIVATE brevlin_options ${ARG_LINKS} Brevlin::Clock GTest::gmock)
    brevlin_moc(${target} "${ARG_QT}")
    if(ARG_QT)
        # The test provides its own main, which makes the application object.
        target_link_libraries(${target} PRIVATE GTest::gtest)
    else()
        target_link_libraries(${target} PRIVATE GTest::gtest_main)
    endif()
    include(GoogleTest)
    gtest_discover_tests(${target} PROPERTIES LABELS unit DISCOVERY_TIMEOUT 60)
endfunction()
