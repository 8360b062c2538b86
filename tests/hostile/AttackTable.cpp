#include "hostile/AttackTable.h"

namespace tarnwell::test {

std::vector<AttackGroup> attackTable() {
  return {
      {"Peer", "Who answers", peerAttacks()},
  };
}

}  // namespace tarnwell::test
