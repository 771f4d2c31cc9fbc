#include "made_up_output.hpp"

#include "clock.hpp"
#include "records.hpp"

namespace test
{

static constexpr int vblank_delay_ms = 1;

made_up_output &made_up(wlr_output *output)
{
    return *owner_of<&made_up_output::base>(output);
}

static int vblank(void *data)
{
    auto &o = *static_cast<made_up_output *>(data);
    wlr_output_event_present event{};
    event.output = &o.base;
    event.commit_seq = o.base.commit_seq;
    event.presented = true;
    event.when = mono_timespec();
    wlr_output_send_present(&o.base, &event);
    wlr_output_send_frame(&o.base);
    return 0;
}

static void keep(wlr_buffer *&kept, wlr_buffer *buffer)
{
    if (kept != nullptr)
        wlr_buffer_unlock(kept);
    kept = buffer != nullptr ? wlr_buffer_lock(buffer) : nullptr;
}

// wlroots waits for a frame event after every commit to an output that is on, even a commit without a buffer.
static bool on_after(const made_up_output &o, const wlr_output_state &state)
{
    return (state.committed & WLR_OUTPUT_STATE_ENABLED) != 0 ? state.enabled : o.base.enabled;
}

static bool output_test(wlr_output *output, const wlr_output_state *state)
{
    return made_up(output).traits.accepts(*state);
}

static bool output_commit(wlr_output *output, const wlr_output_state *state)
{
    made_up_output &o = made_up(output);
    if (!o.traits.accepts(*state))
        return false;
    o.commits++;
    if ((state->committed & WLR_OUTPUT_STATE_ADAPTIVE_SYNC_ENABLED) != 0)
        o.adaptive_sync = state->adaptive_sync_enabled;
    if ((state->committed & WLR_OUTPUT_STATE_COLOR_TRANSFORM) != 0)
        o.gamma_set = state->color_transform != nullptr;
    if (on_after(o, *state))
        wl_event_source_timer_update(o.vblank, vblank_delay_ms);
    if ((state->committed & WLR_OUTPUT_STATE_ENABLED) != 0 && !state->enabled) {
        o.power_offs++;
        keep(o.shown, nullptr);
    } else if ((state->committed & WLR_OUTPUT_STATE_BUFFER) != 0) {
        keep(o.shown, state->buffer);
    }
    return true;
}

static void output_destroy(wlr_output *output)
{
    made_up_output &o = made_up(output);
    wlr_output_finish(output);
    wl_event_source_remove(o.vblank);
    keep(o.shown, nullptr);
    keep(o.cursor, nullptr);
    o.backend->outputs.remove_if([&](const made_up_output &other) { return &other == &o; });
}

static size_t output_gamma_size(wlr_output *output)
{
    return made_up(output).traits.gamma_size;
}

static bool output_set_cursor(wlr_output *output, wlr_buffer *buffer, int, int)
{
    made_up_output &o = made_up(output);
    if (o.traits.has_cursor_plane)
        keep(o.cursor, buffer);
    return o.traits.has_cursor_plane;
}

static constexpr wlr_output_impl output_impl{
    .set_cursor = output_set_cursor,
    .move_cursor = [](wlr_output *, int, int) { return true; },
    .destroy = output_destroy,
    .test = output_test,
    .commit = output_commit,
    .get_gamma_size = output_gamma_size,
};

static void backend_destroy(wlr_backend *base)
{
    made_up_backend *backend = owner_of<&made_up_backend::base>(base);
    while (!backend->outputs.empty())
        unplug(backend->outputs.front());
    backend->devices = {};
    wlr_backend_finish(base);
    delete backend;
}

static constexpr wlr_backend_impl backend_impl{
    .start = [](wlr_backend *) { return true; },
    .destroy = backend_destroy,
};

made_up_backend *made_up_backend_create(wl_event_loop *loop)
{
    auto *backend = new made_up_backend{};
    wlr_backend_init(&backend->base, &backend_impl);
    backend->base.buffer_caps = WLR_BUFFER_CAP_DATA_PTR | WLR_BUFFER_CAP_DMABUF | WLR_BUFFER_CAP_SHM;
    backend->loop = loop;
    return backend;
}

static void add_mode(made_up_output &o, const mode &m)
{
    wlr_output_mode &added = o.modes.emplace_back();
    added.width = m.width;
    added.height = m.height;
    added.refresh = m.refresh_mhz;
    added.preferred = m.preferred;
    wl_list_insert(o.base.modes.prev, &added.link);
}

made_up_output &plug_in(made_up_backend &backend, output_traits traits)
{
    made_up_output &o = backend.outputs.emplace_back();
    o.backend = &backend;
    o.traits = std::move(traits);
    wlr_output_state state{};
    wlr_output_state_init(&state);
    if (o.traits.width > 0)
        wlr_output_state_set_custom_mode(&state, o.traits.width, o.traits.height, 0);
    wlr_output_init(&o.base, &backend.base, &output_impl, backend.loop, &state);
    wlr_output_state_finish(&state);
    if (!o.traits.name.empty())
        wlr_output_set_name(&o.base, o.traits.name.c_str());
    if (!o.traits.serial.empty())
        o.base.serial = strdup(o.traits.serial.c_str());
    o.base.adaptive_sync_supported = true;
    for (const mode &m : o.traits.modes)
        add_mode(o, m);
    o.vblank = wl_event_loop_add_timer(backend.loop, vblank, &o);
    wl_signal_emit_mutable(&backend.base.events.new_output, &o.base);
    return o;
}

void unplug(made_up_output &output)
{
    wlr_output_destroy(&output.base); // frees the record
}

void request_size(made_up_output &output, int width, int height)
{
    wlr_output_state state{};
    wlr_output_state_init(&state);
    wlr_output_state_set_custom_mode(&state, width, height, 0);
    wlr_output_send_request_state(&output.base, &state);
    wlr_output_state_finish(&state);
}

void announce_device(made_up_backend &backend, wlr_input_device &device)
{
    wl_signal_emit_mutable(&backend.base.events.new_input, &device);
}

} // namespace test
