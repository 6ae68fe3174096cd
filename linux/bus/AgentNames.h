#pragma once

// The agent as it appears on the system bus.
//
//   Cards() -> a(sssbs)         address, name, location, simulated, refusal (empty if usable); for anybody
//   Claim(b mayAsk) -> s        "granted", "dismissed", "refused" or "nobody to ask". If granted, all usable
//                               cards are the caller's until LetGo or its disconnection
//   OpenRange(su) -> hut        of a card of the caller's: address, memory type; descriptor, offset in the
//                               page, bytes
//   BeginWrite() -> h           takes the lock; the descriptor holds it too, so that the end of the agent
//                               does not end it
//   EndWrite()
//   LetGo()

namespace agent {

constexpr char kBusName[] = "com.vornlabs.VUpdater.Agent";
constexpr char kObjectPath[] = "/com/vornlabs/VUpdater/Agent";
constexpr char kInterface[] = "com.vornlabs.VUpdater.Agent";

// polkit's name for what the administrator permits.
constexpr char kAction[] = "com.vornlabs.vupdater.use-cards";

// The lock's holder, as logind and the desktop show it.
constexpr char kLockOwner[] = "VUpdater";

}  // namespace agent
