// A host with a scene of nothing but names and parents, so that the core's own work shows.
#pragma once

#include "bench_host.h"
#include "plugins/contract/c_interface.h"
#include "plugins/contract/scene_node.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

class BenchNode final : public MVR::SceneNode {
public:
    BenchNode(std::string name, MVR::CInterface* tool) : SceneNode(std::move(name), tool) {}

    std::intptr_t extend(std::int32_t, std::intptr_t) override { return 0; }
    void show() override {}
    void hide() override {}
    bool isVisible() override { return true; }
    void select() override {}
    SceneNode* getParent() override { return parent_; }
    std::int32_t getChildCount() override { return 0; }
    SceneNode* getChild(std::int32_t) override { return nullptr; }
    void release(SceneNode*) override {}
    std::intptr_t bindTest(MVR::CInterface*, std::string) override { return 0; }
    MVR::TransformAccess* getTransformAccess(double) override { return nullptr; }
    MVR::VisibilityController* getVisibilityController(double) override { return nullptr; }
    void setVisibilityController(MVR::VisibilityController*) override {}
    void releaseTransformAccess(MVR::TransformAccess*) override {}
    bool isSameNode(SceneNode* other) override { return other == this; }
    void setParent(SceneNode* node) override { parent_ = node; }
    void setName(std::string) override {}
    std::string getHostName() override { return name_; }
    void destroy(std::int32_t) override {}
    SceneNode* duplicate(std::int32_t) override { return nullptr; }
    MVR::TransformSnapshot* getSnapshot(double) override { return nullptr; }
    MVR::HelperSnapshot* getHelperSnapshot() override { return nullptr; }
    MVR::MeshSnapshot* getMeshSnapshot(double) override { return nullptr; }
    std::intptr_t getLensSnapshot(double) override { return 0; }
    void startRecording(double) override {}
    std::intptr_t firstExtension(double) override { return 0; }
    void secondExtension(std::intptr_t) override {}

private:
    SceneNode* parent_ = nullptr;
};

class SceneAdaptor final : public BenchAdaptor {
public:
    MVR::SceneNode* createNode(MVR::CInterface* tool, std::string name, std::intptr_t,
                               std::intptr_t) override {
        MVR::SceneNode* const found = createNode(tool, name);
        return found != nullptr ? found : make(tool, std::move(name));
    }
    MVR::SceneNode* createNode(MVR::CInterface* tool, std::string name) override {
        for (MVR::SceneNode* node : getNodes(tool))
            if (node->getName() == name)
                return node;
        return nullptr;
    }
    std::vector<MVR::SceneNode*> getNodes(MVR::CInterface* tool) override {
        const auto found = nodes_.find(tool);
        return found != nodes_.end() ? found->second : std::vector<MVR::SceneNode*>();
    }
    std::vector<MVR::SceneNode*> resolveNodes(MVR::Tag nodeInfo, std::string,
                                              MVR::CInterface* tool) override {
        std::vector<MVR::SceneNode*> nodes;
        for (std::int32_t i = 0; i < nodeInfo.childCount(); ++i)
            nodes.push_back(make(tool, nodeInfo.child(i).attribute("name")));
        return nodes;
    }

    /// Forgets the nodes of destroyed tools.
    void clearScene() {
        nodes_.clear();
        owned_.clear();
    }

private:
    MVR::SceneNode* make(MVR::CInterface* tool, std::string name) {
        owned_.push_back(std::make_unique<BenchNode>(std::move(name), tool));
        return nodes_[tool].emplace_back(owned_.back().get());
    }

    std::vector<std::unique_ptr<BenchNode>> owned_;
    std::unordered_map<MVR::CInterface*, std::vector<MVR::SceneNode*>> nodes_;
};
