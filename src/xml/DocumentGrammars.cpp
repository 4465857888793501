#include "xml/DocumentGrammars.hpp"

#include <xercesc/framework/XMLGrammarDescription.hpp>
#include <xercesc/validators/common/Grammar.hpp>

namespace service::util::config::xml::internal {

namespace {

using xercesc::Grammar;

// Of the table of names, as the XML library has it.
constexpr unsigned int modulus = 109;

template <class Step>
void forEachGrammar(const xercesc::XMLGrammarPool& pool, const Step& step) {
  auto grammars = pool.getGrammarEnumerator();
  while (grammars.hasMoreElements()) step(grammars.nextElement());
}

}  // namespace

DocumentGrammars::DocumentGrammars(xercesc::XMLGrammarPool& commonGrammars,
                                   xercesc::MemoryManager& memory)
    : XMLGrammarPoolImpl(&memory),
      common(commonGrammars),
      names(common.getURIStringPool(), modulus, &memory) {
  try {
    forEachGrammar(common, [this](Grammar& grammar) { cacheGrammar(&grammar); });
  } catch (...) {
    giveBack();
    throw;
  }
}

DocumentGrammars::~DocumentGrammars() {
  giveBack();
}

xercesc::XMLStringPool* DocumentGrammars::getURIStringPool() {
  return &names;
}

// The pool destroys what it holds.
void DocumentGrammars::giveBack() {
  forEachGrammar(common, [this](Grammar& grammar) {
    const XMLCh* key = grammar.getGrammarDescription()->getGrammarKey();
    if (retrieveGrammar(grammar.getGrammarDescription()) == &grammar) orphanGrammar(key);
  });
}

}  // namespace service::util::config::xml::internal
