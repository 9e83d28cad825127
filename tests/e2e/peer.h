// Another process of this program, which does what it is told, a line at a time.
#ifndef VEXA_TESTS_E2E_PEER_H_
#define VEXA_TESTS_E2E_PEER_H_

#include <windows.h>

#include <string>
#include <vector>

namespace vexa::test {

// What a peer does: it loads the library and knows the commands "initialize", "shutdown", "stop OPTION", "references",
// "number NAME", "testmode MODE", "fan INDEX", "hurry MS" (the longest real wait from then on), "trace" and "exit";
// "take" creates the mutex of the driver's service owned, "release" gives it back. Before the answer, which begins with
// "=", it tells of each wait of the library: "wait MS" when it begins, "waited RESULT" when it ends.
int PlayPeer();

class Peer {
 public:
  Peer();
  ~Peer() { Kill(); }

  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  void Tell(const std::string& command);
  // The next line; "(ended)" when the peer has.
  std::string Line();
  // The lines up to and including the one that begins with "=".
  std::vector<std::string> Answer();
  std::vector<std::string> Ask(const std::string& command);
  // Ends it by itself, or by force; returns when it has ended.
  void Exit();
  void Kill();

 private:
  void Gone();

  HANDLE process_ = nullptr;
  HANDLE to_peer_ = nullptr;
  HANDLE from_peer_ = nullptr;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_E2E_PEER_H_
