// The view of the history: what was changed, and a way back.
import {ask, newest} from './api.js';
import {attempt, byId, make, on, sure} from './dom.js';

let seen;  // the newest commit that is shown: nothing that came after it is taken back

async function undo(count) {
  byId('undone').textContent = '';
  await attempt(byId('not-undone'), async () => {
    const {undone} = await ask('POST', '/api/undo', {count, newest: seen});
    byId('undone').textContent = `As before: ${undone.join(', ')}`;
  });
  await openHistory();
}

// "webHttpPort", "FwUrlFilterTable 3 URL", "nvram eth_status".
const whatOf = ({name, table, index, column, store, key}) => name ?? [table ?? store, index ?? key, column].filter((part) => part !== undefined).join(' ');

function line(change, first) {
  const what = whatOf(change);
  const time = new Date(change.time * 1000);
  return make('tr', {}, make('td', {}, time.toLocaleString([], {hour12: false})), make('td', {}, what), make('td', {}, change.old ?? ''), make('td', {}, change.row ?? change.new ?? ''),
    make('td', {}, `${change.program} (${change.process})`),
    make('td', {}, first && change.undo !== null ? sure(change.undo === 1 ? 'Undo' : `Undo the last ${change.undo}`, `Undo ${what} and what came after it`, () => undo(change.undo)) : ''));
}

const read = newest(() => ask('GET', '/api/history?count=200'), ({changes}) => {
  seen = changes?.at(-1)?.commit;
  let above = null;  // what the row above is taken back with
  byId('changes').replaceChildren(...(changes ?? []).reverse().map((change) => {
    const first = change.undo !== above;
    above = change.undo;
    return line(change, first);
  }));
});

export function startHistory() {
  on(byId('undo'), 'click', () => undo(1));
  on(byId('again'), 'click', openHistory);
}

export const openHistory = () => attempt(byId('history-unread'), read);

let soon = null;

// Something has changed. It is announced before its commit, and the history has it after that.
export function historyChanged() {
  if (byId('history').hidden) return;
  soon ??= setTimeout(() => {
    soon = null;
    openHistory();
  }, 300);
}
