#pragma once

#include "MessageGuard.h"

#include <arborium/actions/KsWriteAction.h>
#include <arborium/base/KsLimits.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/io/KsOutput.h>
#include <arborium/nodes/KsSeparator.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

/// The layer is started; at the end no object may be left, nor a limit changed.
class IoTest : public testing::Test {
protected:
    IoTest()
    {
        KsDB::init();
        m_before = KsBase::getNumInstances();
    }
    ~IoTest() override
    {
        EXPECT_EQ(KsBase::getNumInstances(), m_before) << "objects were left behind";
        KsLimits::current() = m_limits;
        if (!m_folder.empty()) std::filesystem::remove_all(m_folder);
        KsDB::finish();
    }

    /// What a text holds, or null. Nothing is posted; the errors stand in `errors`.
    KsRef<KsSeparator> parse(const std::string& text)
    {
        KsInput in;
        in.setBuffer(text.data(), text.size());
        KsRef<KsSeparator> root(KsDB::parse(&in));
        errors.clear();
        for (const KsReadError& each : in.getErrors()) {
            std::string line = each.toString();
            if (line.rfind("<buffer>:", 0) == 0) line.erase(0, line[9] == ' ' ? 10 : 9);
            errors += line + "\n";
        }
        further = in.getNumFurtherErrors();
        EXPECT_EQ(root.get() == nullptr, in.hasErrors());
        return root;
    }
    /// The errors of a text, each as "line:column: message" in a line.
    std::string errorsOf(const std::string& text)
    {
        EXPECT_FALSE(parse(text)) << text;
        return errors;
    }
    static std::string written(KsNode* node, bool binary = false)
    {
        KsOutput out;
        out.setBinary(binary);
        KsWriteAction action(&out);
        action.apply(node);
        return out.getBuffer();
    }
    /// Without the first line.
    static std::string body(const std::string& text) { return text.substr(text.find('\n') + 1); }
    /// A text that is read and written must come out as it was.
    void expectKept(const std::string& text)
    {
        const KsRef<KsSeparator> root = parse(text);
        ASSERT_TRUE(root) << errors << text;
        EXPECT_EQ(written(root), text);
        const std::string binary = written(root, true);
        const KsRef<KsSeparator> again = parse(binary);
        ASSERT_TRUE(again) << errors;
        EXPECT_EQ(written(again, true), binary);
        EXPECT_EQ(written(again), text);
    }

    const std::filesystem::path& folder()
    {
        if (m_folder.empty()) {
            std::string pattern = testing::TempDir() + "arborium-io-XXXXXX";
            m_folder = mkdtemp(pattern.data());
        }
        return m_folder;
    }
    std::string file(const std::string& name, const std::string& content)
    {
        const std::filesystem::path path = folder() / name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << content;
        return path.string();
    }

    std::string errors;
    int further = 0;

private:
    int m_before;
    KsLimits m_limits = KsLimits::current();
    std::filesystem::path m_folder;
};

inline const std::string ascii = "#Arborium V2.1 ascii\n";
