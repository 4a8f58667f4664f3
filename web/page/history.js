// The view of the history: what was changed, and a way back.
import {ask, newest} from './api.js';
import {attempt, byId, make} from './dom.js';

const wrong = () => byId('history').querySelector('.wrong');

async function undo(count) {
  byId('undone').textContent = '';
  await attempt(wrong(), async () => {
    const {undone} = await ask('POST', '/api/undo', {count});
    byId('undone').textContent = `As before: ${undone.join(', ')}`;
  });
  await attempt(make('p'), read);
}

// "webHttpPort", "FwUrlFilterTable 3 URL", "nvram eth_status".
const whatOf = ({name, table, index, column, store, key}) => name ?? [table ?? store, index ?? key, column].filter((part) => part !== undefined).join(' ');

function line(change, first) {
  const what = whatOf(change);
  const time = new Date(change.time * 1000);
  return make('tr', {}, make('td', {}, time.toLocaleString([], {hour12: false})), make('td', {}, what), make('td', {}, change.old ?? ''), make('td', {}, change.row ?? change.new ?? ''),
    make('td', {}, `${change.program} (${change.process})`),
    make('td', {}, first && change.undo !== null ? make('button', {onclick: () => undo(change.undo), 'aria-label': `Undo ${what} and what came after it`}, change.undo === 1 ? 'Undo' : `Undo the last ${change.undo}`) : ''));
}

const read = newest(() => ask('GET', '/api/history?count=200'), ({changes}) => {
  let above = null;  // what the row above is taken back with
  byId('changes').replaceChildren(...(changes ?? []).reverse().map((change) => {
    const first = change.undo !== above;
    above = change.undo;
    return line(change, first);
  }));
});

export function startHistory() {
  byId('undo').addEventListener('click', () => undo(1));
  byId('again').addEventListener('click', openHistory);
}

export const openHistory = () => attempt(wrong(), read);
