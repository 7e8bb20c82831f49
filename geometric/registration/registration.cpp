#include "geometric/registration/registration.h"

namespace geometric {

Registration::~Registration() = default;

}  // namespace geometric
