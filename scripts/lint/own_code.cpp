// SPDX-License-Identifier: MIT
// A plugin of clang-tidy 14: its checks look at the declarations of this project only. It reports
// nothing of system headers anyway, but would look at all of them: half of its time.

#include <clang/AST/ASTConsumer.h>
#include <clang/AST/ASTContext.h>
#include <clang/Frontend/FrontendPluginRegistry.h>

namespace {

class own_code : public clang::ASTConsumer {
public:
    void HandleTranslationUnit(clang::ASTContext& context) override {
        const clang::SourceManager& sources = context.getSourceManager();
        std::vector<clang::Decl*> own;
        for (clang::Decl* each : context.getTranslationUnitDecl()->decls()) {
            if (!sources.isInSystemHeader(sources.getExpansionLoc(each->getBeginLoc())))
                own.push_back(each);
        }
        context.setTraversalScope(own);
    }
};

class plugin : public clang::PluginASTAction {
public:
    std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance& /*compiler*/,
                                                          llvm::StringRef /*file*/) override {
        return std::make_unique<own_code>();
    }
    bool ParseArgs(const clang::CompilerInstance& /*compiler*/,
                   const std::vector<std::string>& /*arguments*/) override {
        return true;
    }
    ActionType getActionType() override { return AddBeforeMainAction; } // in front of the checks
};

const clang::FrontendPluginRegistry::Add<plugin>
    registered("own-code", "look at this project's declarations only");

} // namespace
