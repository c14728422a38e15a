#pragma once

#include <arborium/kits/KsBaseKit.h>

#include <vector>

class KsPath;

/// A kit whose looks are shared nodes, found by their names.
class ARBORIUM_API KsInteractionKit : public KsBaseKit {
    KS_KIT_HEADER(KsInteractionKit);

public:
    KsInteractionKit();

    /// Sets `whichChild` of `node` if it is a switch and has another value: nobody is told of a
    /// value that is there already. Else, and for null, nothing.
    static void setSwitchValue(KsNode* node, int value);

    /// Fills a part, hidden or not, with the first node named `defaultNodeName` that is of the
    /// part's type, or with an empty node of the part's default type if there is none. The node
    /// stays shared, in copies of the kit too, and the part counts as default. With `onlyIfDefault`
    /// a part that was set otherwise is left alone. FALSE if the part was left alone or is unknown
    /// (with a message).
    virtual bool setPartAsDefault(const KbName& part, const KbName& defaultNodeName,
                                  bool onlyIfDefault = true);
    /// The same with a node, whatever its name. Null gives the part back its empty default node.
    virtual bool setPartAsDefault(const KbName& part, KsNode* node, bool onlyIfDefault = true);
    /// Lets a pick that passes the nodes of `path`, which lie outside of the kit, count as a pick
    /// on the part: a press there drags the kit. Null or an empty path ends it. The last node is
    /// kept alive. Copies of the kit do not have it. FALSE with a message for an unknown part or a
    /// path whose last node is the kit or stands above it.
    virtual bool setPartAsPath(const KbName& part, KsPath* path);

protected:
    ~KsInteractionKit() override;

    // Plumbing.
    /// The index in a pick path of the last node of a path that stands for a part; -1 if it passes
    /// none.
    int findPartAsPath(const KsPath& pickPath) const;

private:
    /// Only the last node is held: the path may begin above this kit.
    struct PartPath {
        KbName part;
        KsRef<KsNode> tail;
        std::vector<const KsNode*> nodes;
    };
    std::vector<PartPath> m_partPaths;
};

/// Start and stop of the interaction part of the layer; nestable.
class ARBORIUM_API KsInteraction {
public:
    /// Starts the layer too if nobody has. To be paired with `finish`.
    static void init();
    /// The last one ends what `init` has started. Without an `init` it does nothing.
    static void finish();
    /// How many starts wait for their `finish`.
    static int getInitCount();
};

/// Start and stop of the kits; nestable. As `KsInteraction`.
class ARBORIUM_API KsNodeKit {
public:
    static void init();
    static void finish();
    static int getInitCount();
};
