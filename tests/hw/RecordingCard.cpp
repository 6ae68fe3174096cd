#include "tests/hw/RecordingCard.h"

#include "hw/ApplicationHooks.h"

uint32_t gSerialNumber = 0;
static RecordingCard* card = nullptr;

RecordingCard::RecordingCard() {
    card = this;
    gpRegisters = window.data();
}
void AllowNextEvent() {
    card->asked += "event ";
}
void UpdateProgressBar(uint32_t bytes) {
    card->asked += std::to_string(bytes) + " ";
}
bool ShowAlert(const char* title, const char* message) {
    card->asked += std::string(title) + " / " + message + " ";
    return true;
}
