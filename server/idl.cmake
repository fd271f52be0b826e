# The type library: widl compiles server/tarnctls.idl (which includes each control's .idl) into
# the C++ header and GUID definitions the controls build against, and into the type library
# embedded in the DLL. tlbtool (run under Wine) then gives enumeration members their names with
# spaces and their helpstrings (server/enum_members.txt) and writes the side-by-side manifest
# from the finished library.
find_program(TARN_WIDL NAMES x86_64-w64-mingw32-widl widl REQUIRED)
find_program(TARN_TOOL_CXX NAMES x86_64-w64-mingw32-g++-posix REQUIRED)
set(TARN_WINE_IDL_DIR /usr/include/wine/wine/windows)
set(TARN_STDOLE_DIR /usr/lib/x86_64-linux-gnu/wine/x86_64-windows)
if(TARN_ARCH STREQUAL "x86")
    set(TARN_WIDL_ARCH --win32)
    set(TARN_MANIFEST_ARCH x86)
else()
    set(TARN_WIDL_ARCH --win64)
    set(TARN_MANIFEST_ARCH amd64)
endif()

set(TARN_GEN ${CMAKE_BINARY_DIR}/generated)
file(MAKE_DIRECTORY ${TARN_GEN})
# The one version number (project() in the top CMakeLists.txt) for the resource and manifest.
configure_file(${CMAKE_SOURCE_DIR}/server/tarnctls_version.h.in ${TARN_GEN}/tarnctls_version.h @ONLY)
set(TARN_VERSION_TEXT ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}.${PROJECT_VERSION_PATCH}.0)
file(GLOB_RECURSE TARN_IDL_PARTS CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/*.idl)
list(FILTER TARN_IDL_PARTS EXCLUDE REGEX "/build/")
set(TARN_IDL ${CMAKE_SOURCE_DIR}/server/tarnctls.idl)
set(TARN_WIDL_FLAGS ${TARN_WIDL_ARCH} -I${TARN_WINE_IDL_DIR} -I${CMAKE_SOURCE_DIR} -L${TARN_STDOLE_DIR})
set(TARN_WINE_RUN ${CMAKE_SOURCE_DIR}/scripts/wine-run x64)

# Paths handed to Wine programs: Z: plus the Unix path.
function(tarn_winpath out path)
    string(REPLACE "/" "\\" p "${path}")
    set(${out} "Z:${p}" PARENT_SCOPE)
endfunction()

add_custom_command(
    OUTPUT ${TARN_GEN}/tarnctls_h.h ${TARN_GEN}/tarnctls_i.c ${TARN_GEN}/tarnctls_raw.tlb
    COMMAND ${TARN_WIDL} ${TARN_WIDL_FLAGS} -h -o ${TARN_GEN}/tarnctls_h.h ${TARN_IDL}
    COMMAND ${TARN_WIDL} ${TARN_WIDL_FLAGS} -u -o ${TARN_GEN}/tarnctls_i.c ${TARN_IDL}
    COMMAND ${TARN_WIDL} ${TARN_WIDL_FLAGS} -t -o ${TARN_GEN}/tarnctls_raw.tlb ${TARN_IDL}
    DEPENDS ${TARN_IDL_PARTS}
    COMMENT "Compiling the TarnControls type library"
    VERBATIM)

add_custom_command(
    OUTPUT ${TARN_GEN}/tlbtool.exe
    COMMAND ${TARN_TOOL_CXX} -O1 -std=c++20 -static -o ${TARN_GEN}/tlbtool.exe
            ${CMAKE_SOURCE_DIR}/tools/tlbtool.cpp -loleaut32 -lole32
    DEPENDS ${CMAKE_SOURCE_DIR}/tools/tlbtool.cpp
    COMMENT "Building tlbtool"
    VERBATIM)

tarn_winpath(W_RAW ${TARN_GEN}/tarnctls_raw.tlb)
tarn_winpath(W_TLB ${TARN_GEN}/tarnctls.tlb)
tarn_winpath(W_MEMBERS ${CMAKE_SOURCE_DIR}/server/enum_members.txt)
tarn_winpath(W_MANIFEST ${CMAKE_BINARY_DIR}/bin/tarnctls.manifest)
add_custom_command(
    OUTPUT ${TARN_GEN}/tarnctls.tlb ${CMAKE_BINARY_DIR}/bin/tarnctls.manifest
    COMMAND ${TARN_WINE_RUN} ${TARN_GEN}/tlbtool.exe members ${W_RAW} ${W_TLB} ${W_MEMBERS}
    COMMAND ${TARN_WINE_RUN} ${TARN_GEN}/tlbtool.exe manifest ${W_TLB} ${W_MANIFEST} ${TARN_MANIFEST_ARCH} tarnctls.dll ${TARN_VERSION_TEXT}
    DEPENDS ${TARN_GEN}/tarnctls_raw.tlb ${TARN_GEN}/tlbtool.exe ${CMAKE_SOURCE_DIR}/server/enum_members.txt
            ${TARN_GEN}/tarnctls_version.h
    COMMENT "Naming and describing enumeration members, writing tarnctls.manifest"
    VERBATIM)

add_custom_target(tarn_typelib DEPENDS ${TARN_GEN}/tarnctls_h.h ${TARN_GEN}/tarnctls_i.c ${TARN_GEN}/tarnctls.tlb)
