#include "host/Apartment.h"

namespace lorvane::host {

namespace {

thread_local Apartment* current = nullptr;

}  // namespace

Apartment::~Apartment() {
    forms.clear();
    states_.clear();
}

Apartment& apartment() {
    if (!current) throw HostError(runtime_error::ObjectNotSet);
    return *current;
}

ApartmentScope::ApartmentScope(Object machine) : mine_(std::make_unique<Apartment>(std::move(machine))), outer_(current) {
    current = mine_.get();
}

ApartmentScope::~ApartmentScope() {
    current = mine_.get();  // what ends with the apartment may still name it
    mine_.reset();
    current = outer_;
}

}  // namespace lorvane::host
