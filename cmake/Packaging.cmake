# The Debian package ksv-cimserver (cpack -G DEB in a build configured with KSV_PACKAGE=ON):
# the server, its provider modules and libraries, the MOF, example array models, configuration,
# man page and systemd unit. Included before the targets are made, so that they pick up the
# installed run path and defaults; ksv_package() then says what goes where.

set(CMAKE_INSTALL_PREFIX /usr)
set(KSV_PACKAGE_LIB_DIR /usr/lib/ksv-cimserver)
set(KSV_PACKAGE_PROVIDER_DIR ${KSV_PACKAGE_LIB_DIR}/providers)
set(KSV_PACKAGE_MOF_DIR /usr/share/ksv-cimserver/mof)
set(KSV_LOCAL_SOCKET_PATH /run/ksv-cimserver/ksv-cimserver.socket)
# The private libraries, and the modules that link one another, are found here.
set(CMAKE_INSTALL_RPATH "${KSV_PACKAGE_LIB_DIR};${KSV_PACKAGE_PROVIDER_DIR}")

set(ksv_packaging_dir "${CMAKE_CURRENT_LIST_DIR}/../packaging")

# Needs the package's version and maintainer.
function(ksv_package_documents)
    set(doc_dir "${CMAKE_CURRENT_BINARY_DIR}/package-doc")
    configure_file("${ksv_packaging_dir}/changelog.Debian.in" "${doc_dir}/changelog.Debian" @ONLY)
    # Debian wants both compressed without a time stamp (gzip -n).
    add_custom_command(
        OUTPUT "${doc_dir}/changelog.Debian.gz" "${doc_dir}/ksv-cimserver.8.gz"
        COMMAND gzip -9nc "${doc_dir}/changelog.Debian" > "${doc_dir}/changelog.Debian.gz"
        COMMAND gzip -9nc "${ksv_packaging_dir}/ksv-cimserver.8" > "${doc_dir}/ksv-cimserver.8.gz"
        DEPENDS "${doc_dir}/changelog.Debian" "${ksv_packaging_dir}/ksv-cimserver.8"
        VERBATIM)
    add_custom_target(package_documents ALL
        DEPENDS "${doc_dir}/changelog.Debian.gz" "${doc_dir}/ksv-cimserver.8.gz")
    install(FILES "${doc_dir}/changelog.Debian.gz" "${ksv_packaging_dir}/copyright"
            DESTINATION share/doc/ksv-cimserver)
    install(FILES "${doc_dir}/ksv-cimserver.8.gz" DESTINATION share/man/man8)
endfunction()

function(ksv_package)
    install(TARGETS ksv-cimserver RUNTIME DESTINATION sbin)
    install(TARGETS pegcommon pegprovider pegclient cimxml LIBRARY DESTINATION ${KSV_PACKAGE_LIB_DIR})
    # /usr/lib/ksv-cimserver/libksvapi.so is an alternative (postinst): the simulator, or the
    # array's own library registered with a higher priority.
    install(TARGETS ksvapi LIBRARY DESTINATION ${KSV_PACKAGE_LIB_DIR}/simulator)
    install(TARGETS KSV_DiskDriveProvider KSV_StorageVolumeProvider KSV_DriveCageProvider
            LIBRARY DESTINATION ${KSV_PACKAGE_PROVIDER_DIR})
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/mof/" DESTINATION ${KSV_PACKAGE_MOF_DIR})
    file(GLOB array_models "${PROJECT_SOURCE_DIR}/examples/arrays/*.json")
    install(FILES ${array_models} "${PROJECT_SOURCE_DIR}/examples/arrays/README.md"
            DESTINATION share/ksv-cimserver/arrays)
    install(FILES "${ksv_packaging_dir}/ksv-cimserver.conf" DESTINATION /etc/ksv-cimserver)
    install(FILES "${ksv_packaging_dir}/ksv-cimserver.service" DESTINATION /lib/systemd/system)

    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGE_NAME ksv-cimserver)
    set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
    set(CPACK_DEBIAN_PACKAGE_VERSION ${PROJECT_VERSION})
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_STRIP_FILES ON)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
    set(CPACK_DEBIAN_PACKAGE_MAINTAINER "KSV developers <dev@ksv.example.com>")
    set(CPACK_DEBIAN_PACKAGE_SECTION net)
    set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
    set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "CIM server with the storage array's provider modules")
    set(CPACK_PACKAGE_DESCRIPTION
        "ksv-cimserver answers CIM-XML operations over HTTP and a local socket about the\n"
        "storage array's disk drives, storage volumes and drive cages, through provider\n"
        "modules that read the array with libksvapi. It runs as a systemd service under\n"
        "its own system user. A simulated libksvapi over JSON array models is included;\n"
        "the array's own library replaces it where installed.")
    string(JOIN "" CPACK_PACKAGE_DESCRIPTION ${CPACK_PACKAGE_DESCRIPTION})
    # The libraries' packages come from dpkg-shlibdeps; the rest is what the scripts call.
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
        "${PROJECT_BINARY_DIR}/src/Pegasus/Common;${PROJECT_BINARY_DIR}/src/Pegasus/Provider;${PROJECT_BINARY_DIR}/src/Pegasus/Client;${PROJECT_BINARY_DIR}/src/cimxml;${PROJECT_BINARY_DIR}/src/ksvapi_simulator;${PROJECT_BINARY_DIR}/src/Providers/KSV/StorageVolume;${PROJECT_BINARY_DIR}/src/Providers/KSV/DriveCage")
    set(CPACK_DEBIAN_PACKAGE_DEPENDS adduser)
    set(CPACK_DEBIAN_PACKAGE_SUGGESTS "sblim-wbemcli")
    set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA
        "${ksv_packaging_dir}/conffiles;${ksv_packaging_dir}/postinst;${ksv_packaging_dir}/prerm;${ksv_packaging_dir}/postrm")
    set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
    ksv_package_documents()
    include(CPack)
endfunction()
