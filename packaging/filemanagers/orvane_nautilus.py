"""Entry "New from preset…" in the context menu of a folder's background, for Nautilus with nautilus-python."""

import subprocess

from gi.repository import GLib, GObject, Nautilus

LABELS = {"C": "New from preset…", "de": "Neu aus Vorlage …", "fr": "Nouveau à partir d’un modèle…"}


def label():
    """What the entry is called, in the first of the user's languages that is known."""
    return next((LABELS[name] for name in GLib.get_language_names() if name in LABELS), LABELS["C"])


class OrvaneMenuProvider(GObject.GObject, Nautilus.MenuProvider):
    def get_background_items(self, *arguments):
        # Nautilus 43 and later give the folder alone, earlier ones the window in front of it.
        location = arguments[-1].get_location()
        path = location.get_path() if location is not None else None
        if not path:
            return []
        item = Nautilus.MenuItem(name="Orvane::new_from_preset", label=label())
        item.connect("activate", self._activate, path)
        return [item]

    def get_file_items(self, *arguments):
        return []

    def _activate(self, _item, path):
        try:
            subprocess.Popen(["orvane", "menu", "--in", path], stdin=subprocess.DEVNULL, start_new_session=True)
        except OSError:
            pass
