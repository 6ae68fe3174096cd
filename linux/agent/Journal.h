#pragma once

// What the agent tells the administrator: lines on standard error, which systemd keeps in the journal.

#include <string>

void journal(const std::string& sentences);
