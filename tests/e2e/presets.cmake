# The ready-made presets, each taken from its file and made.
orvane_add_e2e_tests(FOLDER presets NAMES ready_made)
