#pragma once

namespace trelundo {

class CALayer;
class Canvas;
class FittingScope;
class LayoutEngine;
class LayoutItem;
class LayoutNode;
class LayoutPass;
class NSLayoutConstraint;
class NSLayoutDimension;
class NSLayoutXAxisAnchor;
class NSLayoutYAxisAnchor;
class PresentationEngine;
class UIActivityIndicatorView;
class UIAlertAction;
class UIAlertController;
class UIApplication;
class UIButton;
class UICollectionView;
class UICollectionViewCell;
class UICollectionViewFlowLayout;
class UIColor;
class UIControl;
class UIFont;
class UIImage;
class UIImageView;
class UILabel;
class UILayoutGuide;
class UIResponder;
class UIScreen;
class UIScrollView;
class UIStackView;
class UITouch;
class UITraitCollection;
class UIView;
class UIViewController;
class UIWindow;
class ViewOwner;

} // namespace trelundo
