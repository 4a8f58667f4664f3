// Changes as they happen: the list at the side, and whoever else wants to know.
import {ask, token} from './api.js';
import {byId, clock, make} from './dom.js';

const most = 60;  // lines kept
const pause = 5000;  // milliseconds until a refused listener tries again

const shown = (text) => text === null || text === undefined ? '' : `"${text}"`;
const fromTo = ({old, new: value}) => old === undefined && value === undefined ? 'has changed' : `${shown(old)} → ${shown(value)}`;

const sentence = {
  object: (data) => [make('span', {class: 'name'}, data.name), ` ${fromTo(data)}`],
  row: (data) => [make('span', {class: 'name'}, `${data.table} ${data.index}`), data.change === 'set' ?
    ` ${Object.entries(data.columns).map(([name, change]) => `${name} ${fromTo(change)}`).join(', ')}` : ` ${data.change}`],
  network: (data) => [`Network event `, make('span', {class: 'name'}, data.name)],
  missed: (data) => [`${data.count} changes were missed`],
};

function add(type, data) {
  byId('quiet').hidden = true;
  const time = data.time ? new Date(data.time / 1000) : new Date();
  const by = data.program ? make('span', {class: 'by'}, ` by ${data.program} (${data.process})`) : '';
  byId('live').prepend(make('li', {}, make('time', {}, `${clock(time)} `), ...sentence[type](data), by));
  while (byId('live').children.length > most) byId('live').lastChild.remove();
}

function showState(up, text) {
  byId('state').classList.toggle('up', up);
  byId('state').textContent = text;
}

// The browser does not say why a listener was refused, but another request is told whether the token is known.
async function isTokenKnown() {
  try {
    await ask('GET', '/api/objects?match=IMEI&values=0');
  } catch (refusal) {
    return refusal.problem?.status !== 401;
  }
  return true;
}

// `listeners` has a function for a type of event. `whenUp` is called when the router has come back, `whenLocked` when
// kobd-web has another token now.
export function startLive(listeners, whenUp, whenLocked) {
  let up = false;  // so that what has changed since the first reading is read, too
  let source = null;
  async function retry() {
    if (await isTokenKnown()) {
      showState(false, 'No changes are shown: all places of listeners are taken');
      setTimeout(listen, pause);
    } else {
      showState(false, 'kobd-web has another token now');
      whenLocked();
    }
  }
  function leave() {
    source?.close();
    source = null;
    up = false;
  }
  function listen() {
    if (document.hidden || source !== null) return;
    source = new EventSource(`/api/events?token=${token()}`);
    source.addEventListener('error', () => {
      up = false;
      if (source.readyState !== EventSource.CLOSED) return showState(false, 'kobd-web does not answer');
      leave();
      retry();
    });
    source.addEventListener('router', (event) => {
      const state = JSON.parse(event.data);
      showState(state.up, state.up ? state.why ?? 'Connected' : state.why ?? 'kobd does not answer');
      if (state.up && !up) whenUp();
      up = state.up;
    });
    for (const type of ['object', 'row', 'network', 'missed', 'scenario', 'finished'])
      source.addEventListener(type, (event) => {
        const data = JSON.parse(event.data);
        if (sentence[type]) add(type, data);
        listeners[type]?.(data);
      });
  }
  listen();
  // A browser opens six connections for all tabs together: a hidden one leaves its own to the others.
  document.addEventListener('visibilitychange', () => document.hidden ? leave() : listen());
}
