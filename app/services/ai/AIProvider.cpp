// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/ai/AIProvider.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik::aiProvider {

namespace {

struct Facts {
    QString rawValue;
    QString displayName;
    QString defaultModel;
    const char* keyVariable;
    const char* addressVariable;
};

const Facts& facts(AIProvider provider)
{
    static const Facts anthropic{u"anthropic"_s, u"Anthropic (Claude)"_s, u"claude-opus-5-5"_s, "ANTHROPIC_API_KEY",
                                 "ANTHROPIC_BASE_URL"};
    static const Facts openAI{u"openAI"_s, u"OpenAI"_s, u"gpt-5-mini"_s, "OPENAI_API_KEY", "OPENAI_BASE_URL"};
    return provider == AIProvider::openAI ? openAI : anthropic;
}

} // namespace

QString rawValue(AIProvider provider) { return facts(provider).rawValue; }

AIProvider fromRawValue(const QString& name)
{
    const auto* const found = std::ranges::find(all, name, &rawValue);
    return found == all.end() ? AIProvider::anthropic : *found;
}

QString displayName(AIProvider provider) { return facts(provider).displayName; }
QString defaultModel(AIProvider provider) { return facts(provider).defaultModel; }
const char* keyVariable(AIProvider provider) { return facts(provider).keyVariable; }
const char* addressVariable(AIProvider provider) { return facts(provider).addressVariable; }

} // namespace plovik::aiProvider
