#include <framework/PhoneletContext.h>

#include <thread>

PhoneletContext::~PhoneletContext() = default;

void PhoneletContext::sleep(std::chrono::microseconds time)
{
    std::this_thread::sleep_for(time);
}
