#pragma once

// A plug-in of Qt's that watches the program it is loaded into, says on standard output what it saw, and ends
// the program: "firstwindow" once the first window has been drawn, "wholeupdate" once the updater, whose
// buttons it clicks, has updated its first card.
//
// It says four numbers: when the first window had been drawn, in nanoseconds of the monotonic clock, and how
// much processor time that had taken; how much processor time the update took, or 0, all in nanoseconds; and
// the most memory that was resident, in kilobytes.

#include <QGenericPlugin>

class ObserverPlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "ObserverPlugin.json")

  public:
    QObject* create(const QString& key, const QString& settings) override;
};
