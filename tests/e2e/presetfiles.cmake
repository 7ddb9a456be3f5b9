# Import, export, add and check of the built program; the manual page; the completions.
find_package(Python3 COMPONENTS Interpreter REQUIRED)
find_program(ORVANE_BASH bash REQUIRED)
find_program(ORVANE_ZSH zsh REQUIRED)
find_program(ORVANE_FISH fish REQUIRED)
find_program(ORVANE_MANDOC mandoc REQUIRED)
set(packaging ${PROJECT_SOURCE_DIR}/packaging)

add_test(NAME e2e.presetfiles
  COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_LIST_DIR}/presetfiles/presetfiles_test.py $<TARGET_FILE:orvane>)
foreach(shell_and_file bash:bash/orvane zsh:zsh/_orvane fish:fish/orvane.fish)
  string(REPLACE ":" ";" shell_and_file ${shell_and_file})
  list(GET shell_and_file 0 shell)
  list(GET shell_and_file 1 file)
  add_test(NAME e2e.completion-${shell}
    COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_LIST_DIR}/presetfiles/completion_test.py $<TARGET_FILE:orvane>
            ${shell} ${packaging}/completions/${file})
endforeach()
set_tests_properties(e2e.presetfiles e2e.completion-bash e2e.completion-zsh e2e.completion-fish PROPERTIES LABELS e2e TIMEOUT 300)

add_test(NAME lint.completion-bash COMMAND ${ORVANE_BASH} -n ${packaging}/completions/bash/orvane)
add_test(NAME lint.completion-zsh COMMAND ${ORVANE_ZSH} -n ${packaging}/completions/zsh/_orvane)
add_test(NAME lint.completion-fish COMMAND ${ORVANE_FISH} --no-execute ${packaging}/completions/fish/orvane.fish)
add_test(NAME lint.manual COMMAND ${ORVANE_MANDOC} -T lint -W style ${packaging}/man/orvane.1)
set_tests_properties(lint.completion-bash lint.completion-zsh lint.completion-fish lint.manual PROPERTIES LABELS lint TIMEOUT 60)
