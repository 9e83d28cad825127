// Gathers what the doctor judges.
#ifndef CLIENT_DOCTOR_FACTS_H_
#define CLIENT_DOCTOR_FACTS_H_

#include "client/doctor.h"

namespace vexahealth {

// Starts and stops the library once; asks nothing of the battery.
[[nodiscard]] DoctorFacts GatherDoctorFacts();

}  // namespace vexahealth

#endif  // CLIENT_DOCTOR_FACTS_H_
