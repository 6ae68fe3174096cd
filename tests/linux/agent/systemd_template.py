"""A systemd that only starts transient scopes, each once."""

import dbus

BUS_NAME, MAIN_OBJ, MAIN_IFACE, SYSTEM_BUS = ("org.freedesktop.systemd1", "/org/freedesktop/systemd1",
                                              "org.freedesktop.systemd1.Manager", True)


def load(mock, _parameters):
    mock.scopes = set()


@dbus.service.method(MAIN_IFACE, in_signature="ssa(sv)a(sa(sv))", out_signature="o")
def StartTransientUnit(self, name, _mode, properties, _others):
    values = dict(properties)
    processes = [int(process) for process in values["PIDs"]]
    self.log(f"asked for {name} in {values['Slice']} with {processes}")
    if name in self.scopes:
        raise dbus.exceptions.DBusException("It exists", name="org.freedesktop.systemd1.UnitExists")
    self.scopes.add(name)
    return dbus.ObjectPath("/job")
