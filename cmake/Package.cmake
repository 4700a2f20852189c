# What is in the Debian packages and what their control files say; packaging/deb/build makes them with CPack.
#   worker    zivora-worker: the programs, the product's libraries, man pages, what desktops and shells know the caller by
#   avcodec   zivora-avcodec: the codec component
# Versions and dependencies are known when a package is made: packaging/deb/build gives them to CPack.

# The product stands in one folder, whose name has blanks. The sources say which.
file(STRINGS "${PROJECT_SOURCE_DIR}/src/system/library/ZVInstallFolder.h" line REGEX "Fixed\\[\\] = " LIMIT_COUNT 1)
if(NOT line MATCHES "\"/usr/(.+)/\"")
    message(FATAL_ERROR "src/system/library/ZVInstallFolder.h names no folder below /usr that the product is installed in.")
endif()
set(folder "${CMAKE_MATCH_1}")

if(NOT CodecHeaders_COMPONENT)
    message(FATAL_ERROR "There is no folder of a codec component to be packed.")
endif()

set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(plain_file OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
get_property(siblings GLOBAL PROPERTY ZV_SIBLINGS)
install(TARGETS ZVWorker zivora RUNTIME DESTINATION "${folder}" COMPONENT worker)
install(TARGETS ${siblings} LIBRARY DESTINATION "${folder}" PERMISSIONS ${plain_file} COMPONENT worker)

# A program finds what belongs to it by where it is itself, so a link brings it onto the path.
file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/package")
foreach(program IN ITEMS ZVWorker zivora)
    set(link "${PROJECT_BINARY_DIR}/package/${program}")
    file(REMOVE "${link}")
    file(CREATE_LINK "../${folder}/${program}" "${link}" SYMBOLIC)
    install(FILES "${link}" DESTINATION bin COMPONENT worker)
endforeach()

set(desktop "${PROJECT_SOURCE_DIR}/packaging/desktop")
install(FILES "${desktop}/zivora.thumbnailer" DESTINATION share/thumbnailers PERMISSIONS ${plain_file} COMPONENT worker)
install(FILES "${desktop}/zivora.bash" DESTINATION share/bash-completion/completions RENAME zivora
    PERMISSIONS ${plain_file} COMPONENT worker)

# The worker looks for components in this folder, beside itself.
cmake_path(GET CodecHeaders_COMPONENT FILENAME component)
install(DIRECTORY "${CodecHeaders_COMPONENT}/" DESTINATION "${folder}/Plugins/${component}"
    FILE_PERMISSIONS ${plain_file} COMPONENT avcodec)

# packaging/deb/build puts the man pages, copyright files and changelogs there.
foreach(package IN ITEMS worker avcodec)
    install(DIRECTORY "${PROJECT_BINARY_DIR}/package/${package}/" DESTINATION share
        FILE_PERMISSIONS ${plain_file} COMPONENT ${package})
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zivora)
# Each package has a description of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL worker avcodec)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Zivora maintainers <maintainers@zivora.invalid>")
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)

set(CPACK_DEBIAN_WORKER_PACKAGE_NAME zivora-worker)
set(CPACK_DEBIAN_WORKER_DESCRIPTION "background worker of the Zivora media library
The media library starts ZVWorker once for each film, sound file or disc. It
tells what a film is, with its codecs, streams, tags and chapters, finds black
bars, and makes thumbnails. The result goes to a file that the caller names.
Whatever a damaged film does to this process, the library lives on.

The command zivora does the same for people and scripts: it tells what films
are, makes pictures of them, also for the file manager, scans whole folders
into a catalog, and lists the films in it by what they are.")

set(CPACK_DEBIAN_AVCODEC_PACKAGE_NAME zivora-avcodec)
set(CPACK_DEBIAN_AVCODEC_PACKAGE_ENHANCES zivora-worker)
set(CPACK_DEBIAN_AVCODEC_DESCRIPTION "codec component of the Zivora media library
The decoder libraries that ZVWorker opens for every film: FFmpeg with the
readers, decoders and filters that the worker uses. They stand in a folder of
the product and have names of their own, so that no other program finds them.

Without this package the worker analyzes films only where the system has
libraries of the same versions.")

include(CPack)
