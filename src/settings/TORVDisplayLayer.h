#pragma once

#include <QString>

#include <boost/shared_ptr.hpp>

#include <array>

class TORVLayerParameters;
class TORVVisualElement;

/**
 * One layer of the scene: whether it is on, how opaque, which parameters it was last given and what draws it.
 *
 * Ownership: the parameters are the layer's own copy; the element is shared with the pipeline item that built it.
 *
 * Thread: caller locks. The layer of a running pipeline item belongs to the pipeline's thread, any other to the main
 * thread. `keys` and what it answers: any thread.
 */
class TORVDisplayLayer
{
public:
    using Ptr = boost::shared_ptr<TORVDisplayLayer>;
    using CPtr = boost::shared_ptr<const TORVDisplayLayer>;

    /// The numbers are written to settings files.
    enum Key : int
    {
        GROUP_RADARLAYERS = 10,
        LAYER_3DOUTLINE = 11,
        LAYER_3DPRODUCT = 12,
        LAYER_2DPRODUCT = 13,
        GROUP_GEOLAYERS = 40,
        LAYER_3DTERRAIN = 41,
        LAYER_LATLONGRID = 42,
        LAYER_GEOLABELS = 43,
        LAYER_RANGERINGS = 44
    };

    struct KeyInfo
    {
        Key key;
        const char* name;
        bool isGroup;
        Key group;         ///< that holds the layer; of a group: itself
        int persistedRank; ///< place in the settings file's order
    };

    static constexpr int KeyCount = 9;
    static constexpr int PLAIN_LAYER = 301;
    static constexpr int FullOpacity = 100;

    /// All, each group before its members, members in the order of the scene.
    static const std::array<KeyInfo, KeyCount>& keys();

    /// All in the order in which a settings file lists them.
    static const std::array<int, KeyCount>& persistedKeys();

    /// Empty for a number that is no key.
    static QString nameOf(int key);

    explicit TORVDisplayLayer(int key, int tag = PLAIN_LAYER);
    virtual ~TORVDisplayLayer();
    TORVDisplayLayer(const TORVDisplayLayer&) = delete;
    TORVDisplayLayer& operator=(const TORVDisplayLayer&) = delete;

    int getKey() const { return _key; }
    const QString& getName() const { return _name; }
    void setName(const QString& name) { _name = name; }
    int getTag() const { return _tag; } ///< of no meaning: neither copied nor compared
    const QString& getDescription() const { return _description; }
    void setDescription(const QString& description) { _description = description; }
    bool isEnabled() const { return _enabled; }
    void setEnabled(bool enabled) { _enabled = enabled; }
    int getOpacity() const { return _opacity; } ///< percent
    void setOpacity(int opacity);               ///< brought into 0 to 100
    boost::shared_ptr<TORVLayerParameters> getParameters() const { return _parameters; }
    boost::shared_ptr<TORVVisualElement> getElement() const { return _element; }
    void setElement(const boost::shared_ptr<TORVVisualElement>& element) { _element = element; }

    /// What the user chose: key, texts, visibility, opacity. Tag, parameters and element stay.
    void copyState(const TORVDisplayLayer& other);

    /// Takes a copy of the same class; null takes the parameters away. The element stays.
    void setParameters(const boost::shared_ptr<TORVLayerParameters>& parameters);

    /// Takes the parameters away and makes the element, if there is one, invalid.
    virtual void resetParameters();

    /// Whether there is nothing to see: no element, no prop, or a terrain without a tile.
    bool isEmpty() const;

    /// One line for a debug dump.
    QString stateText() const;

private:
    int _key;
    QString _name;
    int _tag;
    QString _description;
    bool _enabled = true;
    int _opacity = FullOpacity;
    boost::shared_ptr<TORVLayerParameters> _parameters;
    boost::shared_ptr<TORVVisualElement> _element;
};
