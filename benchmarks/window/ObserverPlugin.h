#pragma once

// A Qt plug-in that watches the program it is loaded into, reports on standard output and ends the program:
// "firstwindow" once the first window has been drawn, "wholeupdate" once the updater, whose buttons it
// clicks, has updated its first card.
//
// It reports four numbers: when the first window had been drawn (monotonic clock), the processor time used
// until then, the processor time of the update or 0, these in nanoseconds; and the peak resident memory in
// kilobytes.

#include <QGenericPlugin>

class ObserverPlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "ObserverPlugin.json")

  public:
    QObject* create(const QString& key, const QString& settings) override;
};
