# Builds the provider modules against an installed OpenPegasus 2.14 in place of
# the compatible interfaces under src/Pegasus. The imported targets carry the
# same names as ours, so no provider source or CMakeLists changes.
set(KSV_OPENPEGASUS_INCLUDE_DIR "${KSV_OPENPEGASUS_HOME}/include"
    CACHE PATH "Directory that holds Pegasus/Common/Config.h")
set(KSV_OPENPEGASUS_LIBRARY_DIR "${KSV_OPENPEGASUS_HOME}/lib"
    CACHE PATH "Directory that holds libpegcommon.so, libpegprovider.so, libpegclient.so")
set(KSV_OPENPEGASUS_PLATFORM "LINUX_X86_64_GNU" CACHE STRING "OpenPegasus platform name")

if(NOT EXISTS "${KSV_OPENPEGASUS_INCLUDE_DIR}/Pegasus/Common/Config.h")
    message(FATAL_ERROR "No OpenPegasus headers in ${KSV_OPENPEGASUS_INCLUDE_DIR}")
endif()

foreach(lib pegcommon pegprovider pegclient)
    add_library(${lib} SHARED IMPORTED GLOBAL)
    set_target_properties(${lib} PROPERTIES
        IMPORTED_LOCATION "${KSV_OPENPEGASUS_LIBRARY_DIR}/lib${lib}.so"
        INTERFACE_INCLUDE_DIRECTORIES "${KSV_OPENPEGASUS_INCLUDE_DIR}"
        INTERFACE_COMPILE_DEFINITIONS "PEGASUS_PLATFORM_${KSV_OPENPEGASUS_PLATFORM}")
endforeach()
