# zorvel_test_with_fake_language(target): the tests of this binary choose the language of the user and what the output can
# show; as long as they do not, both are the system's.
function(zorvel_test_with_fake_language target)
  set(language _ZN6zorvel8platform12userLanguageB5cxx11Ev)
  set(conversion _ZN6zorvel8platform15fromCodePage932EPKcRNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE)
  target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/fake_language.cpp)
  target_link_options(${target} PRIVATE LINKER:--wrap=${language} LINKER:--wrap=${conversion})
  set_property(SOURCE ${PROJECT_SOURCE_DIR}/tests/support/fake_language.cpp PROPERTY COMPILE_DEFINITIONS
    ZORVEL_USER_LANGUAGE="${language}" ZORVEL_FROM_CODE_PAGE_932="${conversion}")
endfunction()
