// The faults found in one scenario, each with its line.
#ifndef NOTEBOOK_SCENARIO_FAULTS_H_
#define NOTEBOOK_SCENARIO_FAULTS_H_

#include <string>
#include <vector>

namespace scenario {

struct Fault {
  int line;
  std::string message;
};

class Faults {
 public:
  void Add(int line, std::string message);

  bool Empty() const { return faults_.empty(); }

  // By line; in the order found within a line.
  const std::vector<Fault>& List() const { return faults_; }

 private:
  std::vector<Fault> faults_;
};

}  // namespace scenario

#endif  // NOTEBOOK_SCENARIO_FAULTS_H_
