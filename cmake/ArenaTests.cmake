# Tests of arena: its accounts, kills between the steps of a change, and its roles as processes over loopback.
if(CMAKE_CROSSCOMPILING OR WIN32 OR NOT TARGET arena)
  return()
endif()

if(TARGET arena_accounts)
  add_executable(account_tests ${PROJECT_SOURCE_DIR}/tests/arena/account_tests.cpp)
  target_link_libraries(account_tests PRIVATE arena_accounts commonground_warnings GTest::gtest GTest::gtest_main)
  add_test(NAME Arena.AccountStore COMMAND account_tests)
endif()

# A sanitizer slows processes down, and what it would find is in the test above.
if(COMMONGROUND_SANITIZE)
  return()
endif()

if(TARGET arena_accounts)
  add_executable(account_crash ${PROJECT_SOURCE_DIR}/tests/arena/account_crash.cpp)
  target_link_libraries(account_crash PRIVATE arena_accounts commonground_warnings)
  add_test(NAME Arena.NothingAcknowledgedIsLostByAKill
    COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:account_crash> -DPLACE=${PROJECT_BINARY_DIR}/account_crash_files
      -P ${PROJECT_SOURCE_DIR}/tests/arena/account_crash.cmake)
  set_tests_properties(Arena.NothingAcknowledgedIsLostByAKill PROPERTIES TIMEOUT 120)
endif()

# The players are coroutines.
if(NOT COMMONGROUND_HAS_COROUTINES)
  return()
endif()
find_package(Python3 COMPONENTS Interpreter REQUIRED)

# Platforms and scripted players, with each database.
if(TARGET arena_accounts)
  add_executable(waiting_player ${PROJECT_SOURCE_DIR}/tests/arena/waiting_player.cpp)
  target_link_libraries(waiting_player PRIVATE commonground commonground_warnings)
  foreach(database sqlite postgresql)
    add_test(NAME Arena.PlatformServesPlayersWith.${database}
      COMMAND Python3::Interpreter -B ${PROJECT_SOURCE_DIR}/tests/arena/check_platform.py ${database}
        $<TARGET_FILE:arena> $<TARGET_FILE:waiting_player>)
    set_tests_properties(Arena.PlatformServesPlayersWith.${database} PROPERTIES TIMEOUT 180 SKIP_RETURN_CODE 77)
  endforeach()
  # Players through HAProxy, and the files for its operation.
  set(deploy ${PROJECT_SOURCE_DIR}/examples/arena/deploy)
  add_test(NAME Arena.PlatformsBehindHAProxy
    COMMAND Python3::Interpreter -B ${PROJECT_SOURCE_DIR}/tests/arena/check_haproxy.py $<TARGET_FILE:arena>
      ${deploy}/haproxy.cfg)
  set_tests_properties(Arena.PlatformsBehindHAProxy PROPERTIES TIMEOUT 180 SKIP_RETURN_CODE 77)
  add_test(NAME Arena.RolesInThreeNetworks
    COMMAND Python3::Interpreter -B ${PROJECT_SOURCE_DIR}/tests/arena/check_networks.py $<TARGET_FILE:arena>)
  set_tests_properties(Arena.RolesInThreeNetworks PROPERTIES TIMEOUT 180 SKIP_RETURN_CODE 77)
  # Faults while players play; what they are follows from the seed. They take minutes, and start other programs.
  if(COMMONGROUND_OTHER_PROGRAMS)
    function(commonground_fault_test scenario)
      add_test(NAME Arena.Faults.${scenario}
        COMMAND Python3::Interpreter -B ${PROJECT_SOURCE_DIR}/tests/arena/check_faults.py ${scenario}
          $<TARGET_FILE:arena> ${deploy}/haproxy.cfg --seed 1 ${ARGN})
      set_tests_properties(Arena.Faults.${scenario} PROPERTIES TIMEOUT 240 SKIP_RETURN_CODE 77)
    endfunction()
    foreach(scenario disk_full_sqlite disk_full_postgresql)
      commonground_fault_test(${scenario} --seconds 25)
    endforeach()
    set(loss_words "")
    if(COMMONGROUND_UDP)
      set(loss_words --udp)
    endif()
    commonground_fault_test(services)
    commonground_fault_test(balanced)
    commonground_fault_test(loss ${loss_words})
    commonground_fault_test(late_bill)
    commonground_fault_test(login_after_restart --waiting-player $<TARGET_FILE:waiting_player>)
  endif()
  foreach(program haproxy systemd kubernetes)
    add_test(NAME Arena.FilesOfDeployment.${program}
      COMMAND Python3::Interpreter -B ${PROJECT_SOURCE_DIR}/tests/arena/check_deploy.py ${program}
        $<TARGET_FILE:arena> ${deploy})
    set_tests_properties(Arena.FilesOfDeployment.${program} PROPERTIES TIMEOUT 120 SKIP_RETURN_CODE 77)
  endforeach()
endif()

# Captures of a run, by the recorder and from the loopback interface, in wirelens and tshark; hostile connections.
if(COMMONGROUND_OTHER_PROGRAMS AND TARGET arena_accounts AND TARGET wirelens AND TARGET PkgConfig::pcap)
  add_test(NAME Arena.CapturesAgreeInEveryField
    COMMAND Python3::Interpreter -B ${PROJECT_SOURCE_DIR}/tests/arena/check_capture.py $<TARGET_FILE:arena>
      $<TARGET_FILE:wirelens>)
  set_tests_properties(Arena.CapturesAgreeInEveryField PROPERTIES TIMEOUT 120 SKIP_RETURN_CODE 77)
  # Over TLS.
  if(COMMONGROUND_TLS)
    add_test(NAME Arena.PlayersBesideHostileConnections
      COMMAND Python3::Interpreter -B ${PROJECT_SOURCE_DIR}/tests/arena/check_hostile.py $<TARGET_FILE:arena>
        $<TARGET_FILE:wirelens>)
    set_tests_properties(Arena.PlayersBesideHostileConnections PROPERTIES TIMEOUT 120 SKIP_RETURN_CODE 77)
  endif()
endif()

# The other roles. The players are scripts; what they receive is counted.
set(udp "")
if(COMMONGROUND_UDP)
  set(udp --udp)
endif()
function(commonground_arena_test script scenario)
  add_test(NAME Arena.${scenario}
    COMMAND Python3::Interpreter -B ${PROJECT_SOURCE_DIR}/tests/arena/${script} ${scenario} $<TARGET_FILE:arena> ${udp})
  set_tests_properties(Arena.${scenario} PROPERTIES TIMEOUT 120 SKIP_RETURN_CODE 77)
endfunction()
foreach(scenario race_of_eight killed_game_server restarted_zone drained_servers servers_by_registry)
  commonground_arena_test(check_race.py ${scenario})
endforeach()
foreach(scenario sport lesson device address_in_brackets)
  commonground_arena_test(check_sessions.py ${scenario})
endforeach()
set(runs run_over_udp left_in_a_game run_with_faults)
if(COMMONGROUND_TLS)
  list(APPEND runs run_over_tls)
endif()
foreach(scenario ${runs})
  commonground_arena_test(check_run.py ${scenario})
endforeach()
# Which classes travel between all roles, by their recordings; the list says why the rest does not.
if(TARGET arena_accounts AND TARGET wirelens)
  add_test(NAME Arena.AllClassesTravel
    COMMAND Python3::Interpreter -B ${PROJECT_SOURCE_DIR}/tests/arena/check_travel.py all_roles $<TARGET_FILE:arena>
      $<TARGET_FILE:wirelens> ${PROJECT_SOURCE_DIR}/tests/arena/not_travelling.txt ${udp})
  set_tests_properties(Arena.AllClassesTravel PROPERTIES TIMEOUT 180 SKIP_RETURN_CODE 77)
endif()
# Its page in a headless browser, and the dashboard and alerts beside it.
foreach(scenario page names rules)
  commonground_arena_test(check_monitoring.py ${scenario})
endforeach()
