#include "hostile/AttackTable.h"

namespace tarnwell::test {

std::vector<AttackGroup> attackTable() {
  return {
      {"Peer", "Who answers", peerAttacks()},
      {"Greeting", "The greeting", greetingAttacks()},
      {"Closing", "The connection ends", closingAttacks()},
      {"Silence", "The server falls silent", silenceAttacks()},
      {"Client", "The MCP client", clientAttacks()},
      {"Settings", "The settings file", settingsAttacks()},
      {"Saving", "Saving the settings", savingAttacks()},
      {"Secrets", "The secret store", secretAttacks()},
      {"Password", "Looking for the password", passwordAttacks()},
      {"Memory", "Messages of many megabytes", memoryAttacks()},
      {"Endurance", "Very many calls", enduranceAttacks()},
  };
}

}  // namespace tarnwell::test
