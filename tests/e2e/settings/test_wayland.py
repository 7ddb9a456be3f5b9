"""The window on a Wayland compositor: keys are named by its keyboard, and how the hot key stands is said in the window.

Runs inside tests/tools/with-sway.sh. What is shown is read over the accessibility bus.
"""

from settings_desk import *

HOT_KEY = {"ORVHotKeyCode": 0x28, "ORVHotKeyFlags": CONTROL | SHIFT}  # K


class Wayland(SettingsDesktop):
    def start_settings(self, **environment):
        with open(self.home / "settings.log", "ab") as log:
            self.settings = subprocess.Popen([os.environ["ORVANE_TEST_SETTINGS"]],
                                             env=self.environment(QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", **environment),
                                             stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        self.others.append(self.settings)
        wait(lambda: "Orvane Settings" in output("swaymsg", "-t", "get_tree"), "the window; " + (self.home / "settings.log").read_text())
        wait(lambda: self.program() and self.found(BUTTON, "^General$"), "the window on the accessibility bus")
        wait(lambda: self.is_focused(), "the window to have the keyboard")
        wait(self.general, "the page")

    def is_focused(self):
        return re.search(r'"focused": true(?:(?!"focused").)*?"name": "Orvane Settings"', output("swaymsg", "-t", "get_tree"), re.S)

    def general(self):
        # Not with wtype: a key of its own keyboard would make the compositor's keymap another one for a while.
        Atspi.Action.do_action(self.part(BUTTON, "^General$"), 0)
        try:
            return wait(lambda: self.found("text", "^Shortcut$"), "the recorder", 3)
        except TimeIsUp:
            return None

    def shot(self, name):
        folder = os.environ.get("ORVANE_TEST_SCREENSHOTS")
        if folder and os.access(folder, os.W_OK):
            subprocess.run(["grim", str(Path(folder) / f"{name}.png")], check=True, timeout=LIMIT)

    def text_of(self, part):
        return Atspi.Text.get_text(part, 0, Atspi.Text.get_character_count(part))

    def test_keys_are_named_and_what_the_helper_says_is_shown(self):
        self.write_preferences(**HOT_KEY)
        self.start()
        self.start_settings()
        self.assertEqual(self.text_of(self.part("text", "^Shortcut$")), "⌃⇧K")
        wait(lambda: self.found("label", "^The hot key works by sway.$"), "what the helper says")
        self.shot("settings-sway")

    def test_where_the_desktop_gives_no_hot_keys_it_says_how_to_bind_the_command(self):
        self.write_preferences(**HOT_KEY)
        self.start_settings(SWAYSOCK="", XDG_CURRENT_DESKTOP="Hyprland")
        told = wait(lambda: self.found("label", "^This desktop gives programs no hot keys of their own."), "what this desktop needs")
        said = subprocess.run([os.environ["ORVANE_TEST_ORVANE"], "menu", "--help"], capture_output=True, text=True, timeout=LIMIT,
                              env=self.environment(XDG_CURRENT_DESKTOP="Hyprland", SWAYSOCK="")).stdout
        instructions = said.split("\nOn this desktop:\n", 1)[1]
        self.assertEqual(told.get_name().split(), ("This desktop gives programs no hot keys of their own. " + instructions).split())
        self.assertEqual(self.text_of(self.part("text", "^Command to bind a key to$")), "orvane menu")
        self.shot("settings-no-hot-keys")


if __name__ == "__main__":
    unittest.main()
