#pragma once

#include "automation/object.h"
#include "ini/ini_tree.h"

/// How automation objects stand for what the tree is made of. Every node has at most one object at a time, so that asking
/// twice gives the same object.
namespace ini {

/// An object's hold on the node that it stands for.
template <class Class, class Kind>
class NodeHold {
public:
    NodeHold(Class& object, Kind& node) noexcept : node_{&node} { node.object = &object; }
    ~NodeHold() { node_->object = nullptr; }
    NodeHold(const NodeHold&) = delete;
    NodeHold& operator=(const NodeHold&) = delete;

    const Held<Kind>& node() const noexcept { return node_; }
    Kind* operator->() const noexcept { return node_.get(); }
    Kind& operator*() const noexcept { return *node_; }

private:
    Held<Kind> node_;
};

/// The object that stands for a node.
template <class Class, class Kind>
automation::Ref<Class> object_for(Kind& node)
{
    if (node.object)
        return automation::Ref<Class>{static_cast<Class*>(node.object)};
    return automation::make<Class>(node);
}

/// The node that a client's object stands for; null for nothing. Raises 13 for an object of another library.
template <class Class>
auto node_of(IUnknown* object)
{
    const auto own = automation::own<Class>(object);
    if (object && !own)
        throw automation::Error{automation::Runtime::TypeMismatch};
    return own ? own->node() : decltype(own->node()){};
}

} // namespace ini
