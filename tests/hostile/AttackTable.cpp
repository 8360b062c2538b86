#include "hostile/AttackTable.h"

namespace tarnwell::test {

std::vector<AttackGroup> attackTable() {
  return {
      {"Peer", "Who answers", peerAttacks},
      {"Greeting", "The greeting", greetingAttacks},
      {"Closing", "The connection ends", closingAttacks},
      {"Silence", "The server falls silent", silenceAttacks},
      {"Dripping", "The server sends a byte now and then", dripAttacks},
      {"Literals", "Literals", literalAttacks},
      {"Lines", "Lines", lineAttacks},
      {"Tags", "Tags, continuations and refusals", tagAttacks},
      {"Responses", "Messages and searches", responseAttacks},
      {"Folders", "Folders", folderAttacks},
      {"Texts", "Texts of the user and the client", textAttacks},
      {"Writes", "Changes to the mailbox", writeAttacks},
      {"Signals", "Signals to end", signalAttacks},
      {"Client", "The MCP client", clientAttacks},
      {"Settings", "The settings file", settingsAttacks},
      {"Saving", "Saving the settings", savingAttacks},
      {"Secrets", "The secret store", secretAttacks},
      {"Password", "Looking for the password", passwordAttacks},
      {"Neighbours", "Other programs of the user", neighbourAttacks},
      {"Endpoint", "The HTTP endpoint", endpointAttacks},
      {"Memory", "Messages of many megabytes", memoryAttacks},
      {"Endurance", "Very many calls", enduranceAttacks},
  };
}

}  // namespace tarnwell::test
