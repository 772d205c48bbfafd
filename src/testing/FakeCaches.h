#pragma once

#include "testing/FakeRecorder.h"

namespace tavrin::testing {

// The lists that a control asks for one by one: code tables, people, offenses, custom words.

std::unique_ptr<TableCodeCache> makeFakeTableCodeCache(StatePtr state);
std::unique_ptr<EmployeeListCache> makeFakeEmployeeListCache(StatePtr state);
std::unique_ptr<OffenseListCache> makeFakeOffenseListCache(StatePtr state);
std::unique_ptr<UsersCache> makeFakeUsersCache(StatePtr state);
std::unique_ptr<tvCustomDictionary> makeFakeCustomDictionary(StatePtr state);
std::shared_ptr<NibrsModuleService> makeFakeNibrsModule(StatePtr state);

} // namespace tavrin::testing
