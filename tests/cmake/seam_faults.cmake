# zorvel_test_with_seam_faults(target): the tests of this binary make calls of the seam fail (tests/support/seam_faults.h).
# zorvel_test_with_file_faults(target): only those on files and directories; clock and timers are left alone.
#
# Every function of platform/ that can fail, and zvSetTimer, for which the system may have no thread, as the compiler
# names it. A name that is wrong, or no longer there, does not link. Not among them, because they have no way to say that
# they failed: the wall clocks, what is read off a path's or a character's bytes, the identifiers of the process, the
# tick count, and what closes or lets go of something.
if(WIN32)
  set(size y)
  set(uint64 y)
  set(int64 x)
else()
  set(size m)
  set(uint64 m)
  set(int64 l)
endif()
set(string NSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE)
set(zorvel_seam_files
  entryKind=9entryKindEPKc
  fileStatus=10fileStatusEPKcRNS0_10FileStatusE
  modificationTime=16modificationTimeEPKcR${int64}
  modificationTimeAtServer=24modificationTimeAtServerEPKcR${int64}
  changeMode=10changeModeEPKct
  availableSpace=14availableSpaceEPKcR${uint64}
  makeDirectory=13makeDirectoryEPKc
  removeFile=10removeFileEPKc
  openFile=12WritableFile4openEPKcNS0_8OpenModeE
  writeFile=12WritableFile5writeEPKv${size}
  flushFile=12WritableFile5flushEv
  openSearch=15DirectorySearch4openEPKc
  openDirectory=15DirectorySearch13openDirectoryEPKc
  nextOfSearch=15DirectorySearch4nextEv
  codeOfSearch=K15DirectorySearch4codeEv
  listedKind=K15DirectorySearch10listedKindEv
  sizeOfFound=K15DirectorySearch4sizeERi
  openRemoval=16RemovalDirectory4openEPKc
  openChild=16RemovalDirectory9openChildERKS1_PKc
  listEntries=K16RemovalDirectory4listERSt6vectorINS0_11ListedEntryESaIS3_EE
  matchEntries=K16RemovalDirectory5matchEPKcRSt6vectorINS0_11ListedEntryESaIS5_EE
  kindOfEntry=K16RemovalDirectory4kindEPKc
  removeEntry=K16RemovalDirectory10removeFileEPKc
  removeEmptyDirectory=K16RemovalDirectory15removeDirectoryEPKcPS1_
  allowRemovalOf=K16RemovalDirectory14allowRemovalOfEPKc
  allowRemovalsInside=16RemovalDirectory19allowRemovalsInsideEv
  restorePermission=16RemovalDirectory17restorePermissionEv
  resume=16RemovalDirectory6resumeERKS1_)
set(zorvel_seam_services
  sleepFor=8sleepForEl
  sleepUnlessCalled=17sleepUnlessCalledERNS0_6WakeUpEl
  sleepExactlyUnlessCalled=24sleepExactlyUnlessCalledERNS0_6WakeUpEl
  userLanguage=12userLanguageB5cxx11Ev
  fromCodePage932=15fromCodePage932EPKcR${string}
  loadLibrary=11loadLibraryEPKc
  findSymbol=10findSymbolEPvPKc
  unloadLibrary=13unloadLibraryEPv
  listModules=11listModulesEPvPS1_jRj
  moduleFileName=14moduleFileNameEPvS1_Pcj
  ownModuleFileName=14moduleFileNameEPvPcj
  canonicalize=12canonicalizeEPKcPc
  fullPath=8fullPathEPKcPc${size}
  createSemaphore=15createSemaphoreERK${string}ll
  waitForSemaphore=16waitForSemaphoreEPvm
  releaseSemaphore=16releaseSemaphoreEPv
  closeSemaphore=14closeSemaphoreEPv
  lastError=9lastErrorEv
  systemErrorText=15systemErrorTextB5cxx11Em)
set(zorvel_seam_timer _Z10zvSetTimerRKN5boost9function0IvEENS_10posix_time13time_durationEb)
set(names "#define ZORVEL_SEAM_setTimer \"${zorvel_seam_timer}\"\n")
set(zorvel_seam_services_options LINKER:--wrap=${zorvel_seam_timer})
foreach(part files services)
  foreach(function ${zorvel_seam_${part}})
    # The K of a const member stands in front of the namespaces.
    string(REGEX MATCH "^([^=]*)=(K?)(.*)$" parts ${function})
    set(symbol _ZN${CMAKE_MATCH_2}6zorvel8platform${CMAKE_MATCH_3})
    string(APPEND names "#define ZORVEL_SEAM_${CMAKE_MATCH_1} \"${symbol}\"\n")
    list(APPEND zorvel_seam_${part}_options LINKER:--wrap=${symbol})
  endforeach()
endforeach()
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/seam_faults/seam_symbols.h CONTENT "#pragma once\n\n${names}" @ONLY)

function(zorvel_test_with_file_faults target)
  target_sources(${target} PRIVATE
    ${PROJECT_SOURCE_DIR}/tests/support/seam_answers.cpp
    ${PROJECT_SOURCE_DIR}/tests/support/seam_faults.cpp
    ${PROJECT_SOURCE_DIR}/tests/support/seam_files.cpp)
  target_include_directories(${target} PRIVATE ${CMAKE_BINARY_DIR}/seam_faults)
  target_link_options(${target} PRIVATE ${zorvel_seam_files_options})
endfunction()

function(zorvel_test_with_seam_faults target)
  zorvel_test_with_file_faults(${target})
  target_sources(${target} PRIVATE
    ${PROJECT_SOURCE_DIR}/tests/support/fake_clock.cpp
    ${PROJECT_SOURCE_DIR}/tests/support/seam_services.cpp)
  target_link_options(${target} PRIVATE ${zorvel_seam_services_options})
endfunction()
