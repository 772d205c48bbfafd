#include "spell/SpellingEngine.h"

#include "spell/HunspellEngine.h"

namespace tavrin {

SpellingEngineFactory& spellingEngineFactory()
{
    thread_local SpellingEngineFactory factory = [] { return std::make_unique<HunspellEngine>(); };
    return factory;
}

} // namespace tavrin
