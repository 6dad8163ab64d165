#include <framework/PhoneletContext.h>

PhoneletContext::~PhoneletContext() = default;
