#pragma once

#include "component/ComponentClient.h"
#include "component/SetterRow.h"
#include "support/TestCase.h"

#include <memory>

namespace tavrin::test {

/// Base of the test cases whose controls stand over a host that knows something of everything.
class HostedTest : public TestCase
{
protected:
    void init() override
    {
        failOnUnexpectedWarnings();
        m_host = std::make_unique<FakeHost>();
        fillHost(*m_host);
        m_installation = std::make_unique<HostInstallation>(*m_host);
    }
    void cleanup() override
    {
        m_installation.reset();
        m_host.reset();
        TestCase::cleanup();
    }

    FakeHost& host() { return *m_host; }

private:
    std::unique_ptr<FakeHost> m_host;
    std::unique_ptr<HostInstallation> m_installation;
};

} // namespace tavrin::test
