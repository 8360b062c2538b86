# Run by CPack over the tree that becomes the Debian package (Debian Policy, chapter 12): the manual and the
# change logs compressed, the licence as the file "copyright", zsh's completions where Debian's zsh looks, and
# modes and times that do not depend on who builds and when.
set(root ${CPACK_TEMPORARY_DIRECTORY}/usr)
set(documents ${root}/share/doc/tarnwell)

file(RENAME ${root}/share/zsh/site-functions ${root}/share/zsh/vendor-completions)
file(REMOVE ${documents}/LICENSE)
file(RENAME ${documents}/CHANGELOG.md ${documents}/changelog)
file(COPY_FILE ${CPACK_TARNWELL_DEBIAN_FILES}/changelog ${documents}/changelog.Debian)
file(COPY_FILE ${CPACK_TARNWELL_DEBIAN_FILES}/copyright ${documents}/copyright)
file(MAKE_DIRECTORY ${root}/share/lintian/overrides)
file(COPY_FILE ${CPACK_TARNWELL_LINTIAN_OVERRIDES} ${root}/share/lintian/overrides/tarnwell)
execute_process(COMMAND gzip -9 --no-name --force
  ${root}/share/man/man1/tarnwell.1 ${documents}/changelog ${documents}/changelog.Debian
  COMMAND_ERROR_IS_FATAL ANY)

execute_process(COMMAND chmod --recursive u=rwX,go=rX ${root} COMMAND_ERROR_IS_FATAL ANY)
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(COMMAND find ${root} -exec touch --no-dereference --date=@$ENV{SOURCE_DATE_EPOCH} {} +
    COMMAND_ERROR_IS_FATAL ANY)
endif()
