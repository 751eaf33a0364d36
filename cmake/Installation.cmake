# What "cmake --install" puts below a prefix: the program and what a desktop wants to know about it.
# Nothing else is installed but its module and the child programs that it starts; the libraries are
# part of the program, and so are its translations.
#
# CMAKE_INSTALL_BINDIR and the like (GNUInstallDirs) say where.

include(Releases)

set(tessaly_desktop "${PROJECT_SOURCE_DIR}/resources/desktop")
set(tessaly_made "${PROJECT_BINARY_DIR}/installed")
set(tessaly_id io.tessaly.Tessaly) # platform/ProgramIdentity.hpp has it for the program

install(TARGETS tessaly RUNTIME)
install(TARGETS tessaly_preview_module LIBRARY DESTINATION "${TESSALY_MODULE_FOLDER}")
install(TARGETS preview-decoder RUNTIME DESTINATION "${TESSALY_MODULE_FOLDER}")
install(TARGETS tessaly_file_system_probe RUNTIME DESTINATION "${TESSALY_HELPER_FOLDER}")

install(FILES "${tessaly_desktop}/${tessaly_id}.desktop"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")

configure_file("${tessaly_desktop}/${tessaly_id}.metainfo.xml.in"
    "${tessaly_made}/${tessaly_id}.metainfo.xml" @ONLY)
install(FILES "${tessaly_made}/${tessaly_id}.metainfo.xml"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")

set(tessaly_icons "${CMAKE_INSTALL_DATADIR}/icons/hicolor")
install(FILES "${PROJECT_SOURCE_DIR}/resources/icons/tessaly.svg"
    DESTINATION "${tessaly_icons}/scalable/apps" RENAME "${tessaly_id}.svg")
foreach(size IN ITEMS 16 22 24 32 48 64 128 256)
    set(folder "${size}x${size}/apps")
    install(FILES "${PROJECT_SOURCE_DIR}/resources/icons/hicolor/${folder}/tessaly.png"
        DESTINATION "${tessaly_icons}/${folder}" RENAME "${tessaly_id}.png")
endforeach()

install(FILES "${PROJECT_SOURCE_DIR}/resources/debian/copyright"
    DESTINATION "${CMAKE_INSTALL_DOCDIR}")

# tessaly_install_compressed(<file> <folder>) installs FILE.gz, compressed in the build.
find_program(TESSALY_GZIP gzip REQUIRED)
mark_as_advanced(TESSALY_GZIP)
function(tessaly_install_compressed file folder)
    get_filename_component(name "${file}" NAME)
    # Without the name and the time: the same file gives the same bytes.
    add_custom_command(OUTPUT "${file}.gz"
        COMMAND "${TESSALY_GZIP}" --best --no-name --stdout "${file}" > "${file}.gz"
        DEPENDS "${file}"
        COMMENT "Compressing ${name}"
        VERBATIM)
    string(MAKE_C_IDENTIFIER "tessaly_${name}" target)
    add_custom_target(${target} DEPENDS "${file}.gz")
    # A build of the program alone can be installed as well.
    add_dependencies(tessaly ${target})
    install(FILES "${file}.gz" DESTINATION "${folder}")
endfunction()

configure_file("${tessaly_desktop}/tessaly.1.in" "${tessaly_made}/tessaly.1" @ONLY)
tessaly_install_compressed("${tessaly_made}/tessaly.1" "${CMAKE_INSTALL_MANDIR}/man1")
file(WRITE "${tessaly_made}/changelog.new" "${TESSALY_DEBIAN_CHANGELOG}")
configure_file("${tessaly_made}/changelog.new" "${tessaly_made}/changelog" COPYONLY)
tessaly_install_compressed("${tessaly_made}/changelog" "${CMAKE_INSTALL_DOCDIR}")
