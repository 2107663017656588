#pragma once

#include <gtest/gtest.h>

#include "embedded/attached/disc/disc.h"
#include "tests/unit/attached/model/model_drive.h"
#include "tests/unit/attached/scripted_device.h"

namespace embedded::attached {

// A model of a drive called "Drive 2", on a clock whose pauses take no time.
class ModelDriveFixture : public testing::Test {
  protected:
    ModelDriveFixture() : ModelDriveFixture(std::make_unique<ModelDrive>("/dev/sg3")) {}

    void InsertOptical(uint16_t profile, uint32_t capacity) {
        m_model.profile = profile;
        m_model.capacity = capacity;
    }
    void InsertDirectAccess(uint8_t mediumType, uint32_t blockSize, uint32_t capacity) {
        m_model.type = DeviceType::OpticalMemory;
        m_model.mediumType = mediumType;
        m_model.blockSize = blockSize;
        m_model.capacity = capacity;
    }

    DiscDescription Read() {
        const auto disc = ReadDisc(m_device);
        if (disc) return *disc;
        ADD_FAILURE() << disc.GetError().text;
        return {};
    }

    ModelDrive& m_model;
    TimelessWaiting m_waiting;
    Device m_device;

  private:
    explicit ModelDriveFixture(std::unique_ptr<ModelDrive> model)
        : m_model(*model), m_device(std::move(model), "Drive 2", m_waiting) {}
};

}  // namespace embedded::attached
