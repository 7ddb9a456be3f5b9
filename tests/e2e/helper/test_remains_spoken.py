"""What a screen reader is told of the offer to remove what a killed creation left, over the accessibility bus."""

from test_screenreader import Announcements, described, helper_window  # first: it asks for a version of what is common
from test_remains import OFFER, TO_SEE_IT, KilledCreations, active, click, geometry, holds, keys, unittest, wait, window, windows


class Spoken(KilledCreations):
    def test_the_offer_and_its_result_are_told_with_names_and_roles(self):
        top = self.kill_creation("Acme")
        focus = Announcements()
        self.start(QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        offer = wait(lambda: helper_window("The folder “Acme” was not finished."), "the offer on the accessibility bus")
        self.assertIn(offer.get_role_name(), ("dialog", "alert"))
        self.assertIn(str(top), offer.get_description())
        told = described(offer)
        for part in [("text", "Message"), ("push button", "Keep"), ("push button", "Remove What Was Made")]:
            self.assertIn(part, told)
        x, y, _, _ = geometry(window(OFFER))
        self.assertTrue(holds(lambda: windows(OFFER), TO_SEE_IT))
        click(x + 8, y + 8)
        active(OFFER)
        wait(lambda: focus.last() == ("push button", "Keep"), "the button for keeping to have the focus")
        keys("Tab")
        wait(lambda: focus.last() == ("push button", "Remove What Was Made"), "the button for removing to have the focus")
        keys("Return")
        wait(lambda: helper_window("4 files and folders were removed."), "the result on the accessibility bus")
        wait(lambda: focus.last() == ("push button", "Close"), "the button for closing to have the focus")
        self.assertFalse(top.exists())


if __name__ == "__main__":
    unittest.main()
