#pragma once

// The names of rights, which are the Mac's.

// To run a tool with the administrator's rights.
constexpr char kAuthorizationRightExecute[] = "system.privilege.admin";
