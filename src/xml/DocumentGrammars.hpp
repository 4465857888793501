// The grammars of one document: those that all documents of a load have in common, which are lent
// to it, and its own, which are on its budget and go with it.
//
// So no document changes what holds for the next, and what a document type of a few bytes makes of
// itself is bounded like all else. Belongs to one parser, and thread.
#ifndef SRC_XML_DOCUMENTGRAMMARS_HPP
#define SRC_XML_DOCUMENTGRAMMARS_HPP

#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/util/SynchronizedStringPool.hpp>

namespace service::util::config::xml::internal {

class DocumentGrammars : public xercesc::XMLGrammarPoolImpl {
 public:
  // common: kept by reference; nothing is added to it while this lives. memory: for what the
  // document brings.
  DocumentGrammars(xercesc::XMLGrammarPool& common, xercesc::MemoryManager& memory);
  ~DocumentGrammars() override;
  DocumentGrammars(const DocumentGrammars&) = delete;
  DocumentGrammars& operator=(const DocumentGrammars&) = delete;

  // The common grammars call namespaces by their numbers in the common pool, so this one adds to
  // it.
  xercesc::XMLStringPool* getURIStringPool() override;

 private:
  void giveBack();

  xercesc::XMLGrammarPool& common;
  xercesc::XMLSynchronizedStringPool names;
};

}  // namespace service::util::config::xml::internal

#endif
