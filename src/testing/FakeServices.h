#pragma once

#include "testing/FakeRecorder.h"

namespace tavrin::testing {

// The services that every host has. `FakeHostState` says what they answer.

std::unique_ptr<HostServices> makeFakeHostServices(StatePtr state);
std::unique_ptr<XmlFactory> makeFakeXmlFactory(StatePtr state);
std::unique_ptr<Session> makeFakeSession(StatePtr state);
std::unique_ptr<UiServices> makeFakeUiServices(StatePtr state);
std::unique_ptr<Environment> makeFakeEnvironment(StatePtr state);

} // namespace tavrin::testing
