"""python-dbusmock's logind, which can also be on its way to sleep, and then gives no lock, be scheduled to shut down, or
refuse a call. It notices the end of a lock late."""

import os
import time

import dbus
from dbusmock import MOCK_IFACE, mockobject
from dbusmock.templates import logind
from dbusmock.templates.logind import ListInhibitors  # noqa: F401 - a method of the mock
from gi.repository import GLib

BUS_NAME, MAIN_OBJ, MAIN_IFACE, SYSTEM_BUS = logind.BUS_NAME, logind.MAIN_OBJ, logind.MAIN_IFACE, True
LATE_MILLISECONDS = 200


class Locks(list):
    """As logind does, handles calls that come after the end of a lock before it notices that end."""

    def remove(self, lock):
        GLib.timeout_add(LATE_MILLISECONDS, super().remove, lock)


def load(mock, parameters):
    logind.load(mock, parameters)
    mockobject.inhibitors = Locks()
    mock.is_going_to_sleep = False
    mock.is_scheduled = False
    mock.seconds = 0
    mock.refused = ""
    mock.user_of_processes = os.geteuid()


def refuse(mock, method):
    if mock.refused == method:
        raise dbus.exceptions.DBusException("Not now", name="org.freedesktop.DBus.Error.Failed")


@dbus.service.method(MAIN_IFACE, in_signature="ssss", out_signature="h")
def Inhibit(self, what, who, why, mode):
    time.sleep(self.seconds)
    refuse(self, "Inhibit")
    if self.is_going_to_sleep:
        raise dbus.exceptions.DBusException("Already running", name="org.freedesktop.login1.OperationInProgress")
    return logind.Inhibit(self, what, who, why, mode)


@dbus.service.method(MAIN_IFACE, in_signature="st")
def ScheduleShutdown(self, _what, _when):
    if mockobject.inhibitors:
        raise dbus.exceptions.DBusException("Access denied", name="org.freedesktop.DBus.Error.AccessDenied")
    self.is_scheduled = True


@dbus.service.method(MAIN_IFACE, out_signature="b")
def CancelScheduledShutdown(self):
    time.sleep(self.seconds)
    refuse(self, "CancelScheduledShutdown")
    was_scheduled, self.is_scheduled = self.is_scheduled, False
    if not mockobject.inhibitors:
        ScheduleShutdown(self, "poweroff", 0)  # by somebody else, at once
    return was_scheduled


@dbus.service.method(MAIN_IFACE, in_signature="u", out_signature="o")
def GetUserByPID(self, _process):
    return dbus.ObjectPath(f"/org/freedesktop/login1/user/_{self.user_of_processes}")


@dbus.service.method(MOCK_IFACE, in_signature="u")
def SetUserOfProcesses(self, user):
    self.user_of_processes = user


@dbus.service.method(MOCK_IFACE)
def ScheduleShutdownAsRoot(self):
    """Locks do not bind root."""
    self.is_scheduled = True


@dbus.service.method(MOCK_IFACE, out_signature="b")
def IsScheduled(self):
    return self.is_scheduled


@dbus.service.method(MOCK_IFACE, in_signature="d")
def SetSecondsOfACall(self, seconds):
    self.seconds = seconds


@dbus.service.method(MOCK_IFACE, in_signature="s")
def SetRefused(self, method):
    self.refused = method


@dbus.service.method(MOCK_IFACE, in_signature="b")
def SetGoingToSleep(self, is_going_to_sleep):
    self.is_going_to_sleep = is_going_to_sleep
