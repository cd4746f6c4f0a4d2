# Locales for tests of the Linux build, most of them with double-byte codesets, made in the build folder: nothing is
# installed. ZORVEL_TEST_LOCALES is the folder, for LOCPATH; zorvel_test_locales the target. localedef warns (by its
# exit status) that 0x5C is no backslash in some of them.
set(ZORVEL_TEST_LOCALES ${CMAKE_BINARY_DIR}/test-locales)
set(stamps)
foreach(locale ja_JP.SHIFT_JIS ja_JP.WINDOWS-31J ja_JP.EUC-JP ja_JP.EUC-JP-MS ja_JP.EUC-JISX0213 zh_CN.GBK zh_CN.GB2312
               ko_KR.CP949 ko_KR.EUC-KR zh_TW.BIG5 en_US.ISO-8859-1 tr_TR.ISO-8859-9
               ja_JP.UTF-8)
  string(REPLACE "." ";" parts ${locale})
  list(GET parts 0 language)
  list(GET parts 1 charmap)
  set(stamp ${ZORVEL_TEST_LOCALES}/${locale}/LC_CTYPE)
  add_custom_command(OUTPUT ${stamp}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${ZORVEL_TEST_LOCALES}
    COMMAND localedef --force --quiet --no-archive -i ${language} -f ${charmap} ${ZORVEL_TEST_LOCALES}/${locale} || true
    COMMAND ${CMAKE_COMMAND} -E touch_nocreate ${stamp}
    VERBATIM)
  list(APPEND stamps ${stamp})
endforeach()
add_custom_target(zorvel_test_locales DEPENDS ${stamps})

# zorvel_test_in_locale(target locale): one more run of a test binary. The binary refuses to run its tests in a codeset
# other than the one behind the dot.
function(zorvel_test_in_locale target locale)
  string(REGEX REPLACE "^.*[.]" "" codeset ${locale})
  add_dependencies(${target} zorvel_test_locales)
  zorvel_run_test(NAME ${target}.${codeset} TARGET ${target} LABEL unit TIMEOUT 120 ENVIRONMENT
    LC_ALL=${locale} LOCPATH=${ZORVEL_TEST_LOCALES} ZORVEL_CODE_PAGE=${codeset})
endfunction()

# zorvel_test_in_shift_jis(target): a run in which 0x5C may be the second byte of a character.
function(zorvel_test_in_shift_jis target)
  zorvel_test_in_locale(${target} ja_JP.SHIFT_JIS)
endfunction()
