#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "platform/bxt/application.h"

namespace headless {

/// Hands out schemas by code.
class SchemaMap {
public:
    std::shared_ptr<bxtsg::Schema> get(std::uint16_t code) const;
    /// An empty schema takes the code away.
    void attach(std::uint16_t code, std::shared_ptr<bxtsg::Schema> schema);

private:
    std::map<std::uint16_t, std::shared_ptr<bxtsg::Schema>> schemas_;
};

/// A document: a file and what is known about it. It draws nothing.
class Document final : public bxt::IDocument {
public:
    /// `path` is empty for a new document.
    explicit Document(std::wstring path) : path_(std::move(path)) {}

    std::shared_ptr<bxtsg::Schema> get(std::uint16_t code) override { return schemas_.get(code); }
    void attach(std::uint16_t code, std::shared_ptr<bxtsg::Schema> schema) override {
        schemas_.attach(code, std::move(schema));
    }

    /// File that it was opened from, whatever schema 8 has become since.
    const std::wstring& path() const { return path_; }

private:
    std::wstring path_;
    SchemaMap schemas_;
};

/// The application's own factory.
class ApplicationFactory final : public bxtsg::IFactory {
public:
    std::shared_ptr<bxtsg::Schema> get(std::uint16_t code) override { return schemas_.get(code); }
    void attach(std::uint16_t code, std::shared_ptr<bxtsg::Schema> schema) override {
        schemas_.attach(code, std::move(schema));
    }

private:
    SchemaMap schemas_;
};

/// Frame of one document. Keeps the document alive for whoever still holds the frame.
class Frame final : public bxt::IFrame {
public:
    Frame(std::shared_ptr<Document> document, std::shared_ptr<bxt::IHintTarget> hints)
        : document_(std::move(document)), hints_(std::move(hints)) {}

    std::shared_ptr<bxtsg::IFactory> factory() override { return document_; }
    std::shared_ptr<bxt::IHintTarget> hintTarget() override { return hints_; }
    const std::shared_ptr<Document>& document() const { return document_; }

private:
    std::shared_ptr<Document> document_;
    std::shared_ptr<bxt::IHintTarget> hints_;
};

}  // namespace headless
