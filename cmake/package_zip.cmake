# The .zip is an installation in a folder of its own, with a word on how it is used.
set(CPACK_GENERATOR ZIP)
set(CPACK_MONOLITHIC_INSTALL ON)
set(CPACK_PACKAGE_FILE_NAME zorvel-${PROJECT_VERSION}-windows-x64)
configure_file(${CMAKE_CURRENT_LIST_DIR}/zip_readme.txt.in ${PROJECT_BINARY_DIR}/zip/README.txt @ONLY NEWLINE_STYLE CRLF)
set(CPACK_INSTALLED_DIRECTORIES ${PROJECT_BINARY_DIR}/zip .)
