// The report in the text format of Prometheus, version 0.0.4.
//
// A number or flag becomes one gauge. Its name is "vexahealth_", the reading's key with "_" for ".", and its unit in
// Prometheus' base units: millivolts become volts, 0.1 K become degrees Celsius. A number in the key (a cell, a fan, an
// object of the contract) becomes the label "index". Readings without a value have no gauge. Beside them:
//
//   vexahealth_up                                  1: the library worked and told something about the notebook
//   vexahealth_info{version,route}                 1
//   vexahealth_text_info{key,value}                1 for each text but the time of day
//   vexahealth_reading_status{key,status,source}   1 for each reading
//   vexahealth_readings{status}                    how many readings have this status, all six of them
//
// Names stay as they are within a schema version.
#ifndef CLIENT_PROMETHEUS_H_
#define CLIENT_PROMETHEUS_H_

#include <string>

#include "client/reading.h"

namespace vexahealth {

struct Metric {
  std::string name;
  std::string index;  // of the label "index"; empty: no label
};

// The gauge of this row's readings.
[[nodiscard]] Metric MetricOf(const Row& row);

[[nodiscard]] std::string PrometheusText(const Report& report);

}  // namespace vexahealth

#endif  // CLIENT_PROMETHEUS_H_
