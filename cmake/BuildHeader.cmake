# Writes HEADER with the version and, where SOURCE is the top of a git checkout, its revision. Without git or outside a
# checkout, as in a source package, the revision is empty. An unchanged header is left alone.
cmake_minimum_required(VERSION 3.25)

set(REVISION "")
find_program(GIT git)
if(GIT)
    execute_process(
        COMMAND ${GIT} -C ${SOURCE} rev-parse --show-toplevel
        OUTPUT_VARIABLE top
        OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    file(REAL_PATH ${SOURCE} source)
    if(top STREQUAL source)
        execute_process(
            COMMAND ${GIT} -C ${SOURCE} rev-parse --short=7 HEAD
            OUTPUT_VARIABLE REVISION
            OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    endif()
endif()
file(CONFIGURE OUTPUT ${HEADER} @ONLY CONTENT
     "#define BREVLIN_BUILD_VERSION \"@VERSION@\"\n#define BREVLIN_BUILD_REVISION \"@REVISION@\"\n")
