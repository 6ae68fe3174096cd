#include "app/hosts/UsersMachine.h"

#include <QFile>
#include <QStandardPaths>

#include "simulator/machine/DefaultMachine.h"
#include "simulator/storage/MachineDirectory.h"

std::filesystem::path UsersMachine() {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    std::filesystem::path folder = QFile::encodeName(data + "/vupdater/machine").toStdString();
    if (!std::filesystem::exists(folder / "machine.json")) {
        const auto directory = simulator::MachineDirectory::create(folder);
        simulator::addDefaultCards(directory->machine());
        directory->save();
    }
    return folder;
}
