#pragma once
// Umbrella header of the ZQVelisto library: include this one header in a host program.

#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQPlatform.h"

#include "ZQ/core/ZQArray.h"
#include "ZQ/core/ZQKalman.h"
#include "ZQ/core/ZQLock.h"
#include "ZQ/core/ZQMapper.h"
#include "ZQ/core/ZQRand.h"
#include "ZQ/core/ZQRect.h"
#include "ZQ/core/ZQString.h"
#include "ZQ/core/ZQThread.h"
#include "ZQ/core/ZQTimer.h"
#include "ZQ/core/ZQVector.h"

#include "ZQ/frame/ZQDeviceSettings.h"
#include "ZQ/frame/ZQDirect3d.h"
#include "ZQ/frame/ZQErrors.h"
#include "ZQ/frame/ZQKeyboard.h"
#include "ZQ/frame/ZQMediaSearch.h"
#include "ZQ/frame/ZQMouse.h"
#include "ZQ/frame/ZQResponseKeyboard.h"
#include "ZQ/frame/ZQResponseWindow.h"
#include "ZQ/frame/ZQScene.h"
#include "ZQ/frame/ZQSceneManager.h"
#include "ZQ/frame/ZQVelisto.h"
#include "ZQ/frame/ZQWindow.h"

#include "ZQ/twod/ZQFont.h"
#include "ZQ/twod/ZQPackedFile.h"
#include "ZQ/twod/ZQSprite.h"
#include "ZQ/twod/ZQSpriteRender.h"
#include "ZQ/twod/ZQTexture.h"
#include "ZQ/twod/ZQTextureChunk.h"

#include "ZQ/threed/ZQ3DCamera.h"
#include "ZQ/threed/ZQ3DSpline.h"
