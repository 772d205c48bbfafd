#pragma once

#include "attachments/section/AttachmentsForm.h"

#include <optional>

namespace tavrin::test {

/// A test case each of whose tests has a form of its own.
class AttachmentsCase : public TestCase
{
protected:
    void init() override
    {
        failOnUnexpectedWarnings();
        m_form.emplace();
    }
    void cleanup() override
    {
        m_form.reset();
        TestCase::cleanup();
    }

    std::optional<AttachmentsForm> m_form;
};

} // namespace tavrin::test
