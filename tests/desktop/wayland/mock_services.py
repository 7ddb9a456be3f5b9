#!/usr/bin/python3
"""Stands in for KGlobalAccel and for the desktop portal on the session bus.

  mock_services.py kglobalaccel taken|free|held    (held: the key never comes up again)
  mock_services.py portal MODE

with MODE one of
  refuse    CreateSession is answered with response 2
  error     CreateSession is an error, as where the application has no name
  empty     everything succeeds, with no shortcut bound
  deny      the user refuses: BindShortcuts is answered with response 1
  grant     BindShortcuts binds the shortcut that was asked for
  early     the shortcuts of CreateSession's options are bound, those of BindShortcuts are not (Plasma 5.27)
  grant2    BindShortcuts binds the shortcut, and is answered with response 2 all the same (GNOME 48)
  deny2     the user refuses: BindShortcuts is answered with response 2 and without a shortcut (GNOME 48)
A portal that runs already is replaced. Prints "ready" when its name is there. The method org.orvane.Test.Press at /test presses whatever is bound.
"""
import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

PORTAL = "org.freedesktop.portal.GlobalShortcuts"
SHORTCUTS = "a(sa{sv})"


class Accel(dbus.service.Object):
    def __init__(self, bus, mode):
        super().__init__(bus, "/kglobalaccel")
        self.mode = mode
        self.component = Component(bus, mode)

    @dbus.service.method("org.kde.KGlobalAccel", in_signature="as")
    def doRegister(self, action):
        pass

    @dbus.service.method("org.kde.KGlobalAccel", in_signature="asaiu", out_signature="ai")
    def setShortcut(self, action, keys, flags):
        if self.mode == "taken":
            return dbus.Array([0], signature="i")
        self.component.bound = (action[0], action[1])
        return keys

    @dbus.service.method("org.kde.KGlobalAccel", in_signature="i", out_signature="a(ssssssaiai)")
    def getGlobalShortcutsByKey(self, key):
        names = ("act", "Act", "other.program", "Other Program", "default", "Default")
        return [names + (dbus.Array([key], signature="i"), dbus.Array([], signature="i"))]

    @dbus.service.method("org.kde.KGlobalAccel", in_signature="s", out_signature="o")
    def getComponent(self, name):
        return "/component/orvane"

    @dbus.service.method("org.kde.KGlobalAccel", in_signature="ss", out_signature="b")
    def unregister(self, component, action):
        self.component.bound = None
        return True


class Component(dbus.service.Object):
    bound = None

    def __init__(self, bus, mode):
        super().__init__(bus, "/component/orvane")
        self.mode = mode

    @dbus.service.signal("org.kde.kglobalaccel.Component", signature="ssx")
    def globalShortcutPressed(self, component, action, timestamp):
        pass

    @dbus.service.signal("org.kde.kglobalaccel.Component", signature="ssx")
    def globalShortcutReleased(self, component, action, timestamp):
        pass

    def press(self):
        if self.bound:
            self.globalShortcutPressed(*self.bound, 0)
            if self.mode != "held":
                self.globalShortcutReleased(*self.bound, 0)


class Request(dbus.service.Object):
    @dbus.service.signal("org.freedesktop.portal.Request", signature="ua{sv}")
    def Response(self, response, results):
        pass


class Session(dbus.service.Object):
    @dbus.service.method("org.freedesktop.portal.Session")
    def Close(self):
        self.remove_from_connection()


class Portal(dbus.service.Object):
    def __init__(self, bus, mode):
        super().__init__(bus, "/org/freedesktop/portal/desktop")
        self.bus, self.mode, self.bound, self.session = bus, mode, [], None
        self.requests = []

    def answer(self, sender, options, response, results):
        path = "/org/freedesktop/portal/desktop/request/%s/%s" % (sender[1:].replace(".", "_"), options["handle_token"])
        request = Request(self.bus, path)
        self.requests.append(request)
        GLib.idle_add(lambda: request.Response(response, dbus.Dictionary(results, signature="sv")))
        return path

    def with_triggers(self, shortcuts):
        self.bound = [name for name, _ in shortcuts]
        bound = [(name, {"description": p["description"], "trigger_description": p["preferred_trigger"]}) for name, p in shortcuts]
        return dbus.Array(bound, signature="(sa{sv})", variant_level=1)

    @dbus.service.method("org.freedesktop.DBus.Properties", in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        return dbus.UInt32(1)

    @dbus.service.method(PORTAL, in_signature="a{sv}", out_signature="o", sender_keyword="sender")
    def CreateSession(self, options, sender=None):
        if self.mode == "error":
            raise dbus.DBusException("An app id is required", name="org.freedesktop.portal.Error.NotAllowed")
        if self.mode == "refuse":
            return self.answer(sender, options, dbus.UInt32(2), {})
        self.session = "/org/freedesktop/portal/desktop/session/%s/%s" % (
            sender[1:].replace(".", "_"), options["session_handle_token"])
        self.requests.append(Session(self.bus, self.session))
        results = {"session_handle": dbus.String(self.session, variant_level=1)}
        if self.mode == "early":
            results["shortcuts"] = self.with_triggers(options["shortcuts"])
        return self.answer(sender, options, dbus.UInt32(0), results)

    @dbus.service.method(PORTAL, in_signature="o" + SHORTCUTS + "sa{sv}", out_signature="o", sender_keyword="sender")
    def BindShortcuts(self, session, shortcuts, parent, options, sender=None):
        if self.mode == "deny":
            return self.answer(sender, options, dbus.UInt32(1), {})
        if self.mode == "deny2":
            return self.answer(sender, options, dbus.UInt32(2), {})
        bound = self.with_triggers(shortcuts) if "grant" in self.mode else dbus.Array([], signature="(sa{sv})", variant_level=1)
        return self.answer(sender, options, dbus.UInt32(2 if self.mode == "grant2" else 0), {"shortcuts": bound})

    @dbus.service.signal(PORTAL, signature="osta{sv}")
    def Activated(self, session, name, timestamp, options):
        pass

    @dbus.service.signal(PORTAL, signature="osta{sv}")
    def Deactivated(self, session, name, timestamp, options):
        pass

    def press(self):
        for name in self.bound:
            self.Activated(self.session, name, 0, dbus.Dictionary({}, signature="sv"))
            self.Deactivated(self.session, name, 0, dbus.Dictionary({}, signature="sv"))


class Test(dbus.service.Object):
    def __init__(self, bus, press):
        super().__init__(bus, "/test")
        self.press = press

    @dbus.service.method("org.orvane.Test")
    def Press(self):
        self.press()


def main():
    kind, mode = sys.argv[1:3]
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    if kind == "kglobalaccel":
        service = Accel(bus, mode)
        test = Test(bus, service.component.press)
        name = dbus.service.BusName("org.kde.kglobalaccel", bus, do_not_queue=True)
    else:
        service = Portal(bus, mode)
        test = Test(bus, service.press)
        name = dbus.service.BusName("org.freedesktop.portal.Desktop", bus, replace_existing=True, do_not_queue=True)
    print("ready", flush=True)
    GLib.MainLoop().run()
    del service, test, name


main()
