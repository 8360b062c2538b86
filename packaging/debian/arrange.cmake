# Run by CPack over the trees that become the Debian packages (Debian Policy, chapter 12): the manuals and the
# change logs compressed, the licence as the file "copyright", zsh's completions where Debian's zsh looks, and
# modes and times that do not depend on who builds and when.
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} COMPONENT)
  set(package ${CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME})
  set(root ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr)
  set(documents ${root}/share/doc/${package})

  if(component STREQUAL helper)
    file(RENAME ${root}/share/zsh/site-functions ${root}/share/zsh/vendor-completions)
    file(REMOVE ${documents}/LICENSE ${documents}/CHANGELOG.md)
  endif()
  file(MAKE_DIRECTORY ${documents} ${root}/share/lintian/overrides)
  file(COPY_FILE ${CPACK_TARNWELL_SOURCE}/CHANGELOG.md ${documents}/changelog)
  file(COPY_FILE ${CPACK_TARNWELL_DEBIAN_FILES}/changelog ${documents}/changelog.Debian)
  file(COPY_FILE ${CPACK_TARNWELL_DEBIAN_FILES}/copyright ${documents}/copyright)
  file(COPY_FILE ${CPACK_TARNWELL_SOURCE}/packaging/debian/${package}.lintian-overrides
    ${root}/share/lintian/overrides/${package})
  execute_process(COMMAND gzip -9 --no-name --force
    ${root}/share/man/man1/${package}.1 ${documents}/changelog ${documents}/changelog.Debian
    COMMAND_ERROR_IS_FATAL ANY)

  execute_process(COMMAND chmod --recursive u=rwX,go=rX ${root} COMMAND_ERROR_IS_FATAL ANY)
  if(DEFINED ENV{SOURCE_DATE_EPOCH})
    execute_process(COMMAND find ${root} -exec touch --no-dereference --date=@$ENV{SOURCE_DATE_EPOCH} {} +
      COMMAND_ERROR_IS_FATAL ANY)
  endif()
endforeach()
