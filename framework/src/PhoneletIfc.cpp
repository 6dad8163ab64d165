#include <framework/PhoneletIfc.h>

PhoneletIfc::~PhoneletIfc() = default;
