// Components whose references lead back to themselves, and one outside that waits for them. None
// can be made; the functions have only to be there.

#include "registration.hpp"

TEST_COMPONENT(RingListener, nullptr)
TEST_COMPONENT(RingGreeter, nullptr)
TEST_COMPONENT(OwnTail, nullptr)
TEST_COMPONENT(Outside, nullptr)
TEST_BUNDLE(test_cycle)
