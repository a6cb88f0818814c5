#pragma once

#include <memory>
#include <string>

namespace os {

/// A library loaded at run time; destruction releases it.
class Module {
public:
    virtual ~Module() = default;

    /// Address of an exported name, or null.
    virtual void* symbol(const char* name) const = 0;
};

/// Loads libraries. A plain name is looked for beside the running executable and in its library
/// folder first, then where the system looks.
class Modules {
public:
    virtual ~Modules() = default;

    /// Null when the library can't be found or loaded.
    virtual std::unique_ptr<Module> load(const std::wstring& name) = 0;
};

}  // namespace os
