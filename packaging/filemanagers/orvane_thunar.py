"""Entry "New from preset…" in the context menu of a folder's background, for Thunar with thunarx-python.

Thunar was seen to crash at its start over an extension that cannot import Thunarx (package gir1.2-thunarx-3.0, which
thunarx-python does not ask for). So without it this file holds no class at all.
"""

import subprocess

try:
    import gi

    gi.require_version("Thunarx", "3.0")
    from gi.repository import GLib, GObject, Thunarx
except (ImportError, ValueError, AttributeError):
    Thunarx = None

LABELS = {"C": "New from preset…", "de": "Neu aus Vorlage …", "fr": "Nouveau à partir d’un modèle…"}


def label():
    """What the entry is called, in the first of the user's languages that is known."""
    return next((LABELS[name] for name in GLib.get_language_names() if name in LABELS), LABELS["C"])


if Thunarx is not None:

    class OrvaneMenuProvider(GObject.GObject, Thunarx.MenuProvider):
        def get_folder_menu_items(self, window, folder):
            location = folder.get_location()
            path = location.get_path() if location is not None else None
            if not path:
                return []
            item = Thunarx.MenuItem(name="Orvane::new_from_preset", label=label(), tooltip="", icon="folder-new")
            item.connect("activate", self._activate, path)
            return [item]

        def get_file_menu_items(self, window, files):
            return []

        def _activate(self, _item, path):
            try:
                subprocess.Popen(["orvane", "menu", "--in", path], stdin=subprocess.DEVNULL, start_new_session=True)
            except OSError:
                pass
