#pragma once

// The Mac's names for rights.

// To run a tool with the administrator's rights.
constexpr char kAuthorizationRightExecute[] = "system.privilege.admin";
